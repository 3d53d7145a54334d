#pragma once

#include "Platform/DispatchQueue.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace platform {

/// A main loop that moves only when a test says so, with a clock of its own.
class HeadlessQueue : public DispatchQueue {
 public:
  HeadlessQueue();

  void async(std::function<void()> work) override;
  std::unique_ptr<Timer> timer(double seconds, std::function<void()> work) override;
  void asyncAfter(double seconds, std::function<void()> work) override;
  bool isCurrent() const noexcept override;

  /// Runs what is queued, and what that queues, until nothing is left.
  void drain();
  /// Lets `seconds` pass: runs what is queued and every timer that falls due, each at its own time.
  void advance(double seconds);

  double now() const;
  void setNow(double secondsSince1970);
  /// True if no timer is waiting and no work is queued.
  bool isIdle() const;

 private:
  using Key = std::pair<double, std::uint64_t>;

  Key addTimer(double seconds, std::function<void()> work);

  struct TimerTable;
  class HeadlessTimer;

  mutable std::mutex mutex_;
  std::deque<std::function<void()>> queue_;
  std::shared_ptr<TimerTable> timers_;
  double now_ = 1'700'000'000.0;
  std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace platform
