#include "Platform/CrashReloadPolicy.h"

namespace platform {

bool CrashReloadPolicy::shouldReload(double now) {
  while (!reloads_.empty() && now - reloads_.front() >= period) reloads_.pop_front();
  if (reloads_.size() >= mostReloads) return false;
  reloads_.push_back(now);
  return true;
}

}  // namespace platform
