#include "Timing.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <glib.h>

namespace bench {

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Figures::atShare(double share) const {
  auto sorted = values_;
  std::sort(sorted.begin(), sorted.end());
  return sorted.at(
      std::min(sorted.size() - 1, static_cast<std::size_t>(share * static_cast<double>(sorted.size()))));
}

bool waitFor(const std::function<bool()>& condition, double seconds) {
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (Clock::now() > end) return false;
    while (g_main_context_pending(nullptr) != FALSE) g_main_context_iteration(nullptr, FALSE);
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  return true;
}

void rest(double seconds) {
  waitFor([] { return false; }, seconds);
}

void refuse(const char* message) {
  std::fprintf(stderr, "bench: %s\n", message);
  std::exit(1);
}

void printRowHead() { std::printf("%-44s %9s %9s %8s %8s\n", "", "Velkin", "baseline", "ratio", "goal"); }

void printRow(const char* what, double ours, double reference, double goal) {
  std::printf("%-44s %9.1f %9.1f %8.2f %8.2f  %s\n", what, ours, reference, ours / reference, goal,
              ours / reference <= goal ? "reached" : "MISSED");
  std::fflush(stdout);
}

}  // namespace bench
