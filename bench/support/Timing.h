#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

[[nodiscard]] double millisecondsSince(Clock::time_point start);

/// The values of several rounds; none of these may be asked of an empty set.
class Figures {
 public:
  void add(double value) { values_.push_back(value); }
  [[nodiscard]] double min() const { return atShare(0); }
  [[nodiscard]] double median() const { return atShare(0.5); }
  [[nodiscard]] double p90() const { return atShare(0.9); }

 private:
  [[nodiscard]] double atShare(double share) const;
  std::vector<double> values_;
};

/// Turns the main loop until the condition holds; false when it doesn't within the time.
bool waitFor(const std::function<bool()>& condition, double seconds = 30);

/// Turns the main loop for that time.
void rest(double seconds);

/// Ends the benchmark with a message: a figure that was not measured must not be printed.
[[noreturn]] void refuse(const char* message);

/// "what, ours, the reference's, their ratio, the goal, reached or missed", below `printRowHead`.
void printRowHead();
void printRow(const char* what, double ours, double reference, double goal);

}  // namespace bench
