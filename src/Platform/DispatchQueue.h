#pragma once

#include <functional>
#include <memory>

namespace platform {

/// A timer that has been started. Destroying or invalidating it before it fires cancels it.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual void invalidate() noexcept = 0;
};

/// The main loop's queue of work.
class DispatchQueue {
 public:
  /// The queue of the installed platform.
  static DispatchQueue& main();

  virtual ~DispatchQueue() = default;

  /// Runs `work` on the main loop, after what was queued before it. Any thread.
  virtual void async(std::function<void()> work) = 0;

  /// Runs `work` on the main loop once, `seconds` from now. Main thread.
  virtual std::unique_ptr<Timer> timer(double seconds, std::function<void()> work) = 0;

  /// As `timer`, with nobody who could cancel it.
  virtual void asyncAfter(double seconds, std::function<void()> work) = 0;

  /// True on the thread that runs the main loop.
  virtual bool isCurrent() const noexcept = 0;
};

/// Seconds since 1970, by the installed platform's clock. Any thread.
double now();

}  // namespace platform
