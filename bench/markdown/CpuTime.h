#pragma once

#include <ctime>

/// The time that this thread has spent on a processor. What else the machine does is not in it.
[[nodiscard]] inline double cpuSeconds() noexcept {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}
