#pragma once

#include <cstddef>
#include <deque>

namespace platform {

/// How often a page whose process died comes back by itself: at most three times in any minute, so that a
/// page that kills its process at once doesn't keep the machine busy.
class CrashReloadPolicy {
 public:
  static constexpr std::size_t mostReloads = 3;
  static constexpr double period = 60;

  /// Asked at each death, with the seconds since 1970: true if the page may be loaded again by itself.
  bool shouldReload(double now);

 private:
  std::deque<double> reloads_;
};

}  // namespace platform
