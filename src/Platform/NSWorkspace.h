#pragma once

#include "Platform/URL.h"

#include <string>
#include <vector>

namespace platform {

struct NSRunningApplication {
  std::string bundleIdentifier;
};

/// The desktop around the program. Main thread.
class NSWorkspace {
 public:
  static NSWorkspace& shared();
  virtual ~NSWorkspace() = default;

  /// Opens an address in the user's default program for it. False if there is none.
  virtual bool open(const URL& url) = 0;
  /// Programs of ours that run at the moment.
  virtual std::vector<NSRunningApplication> runningApplications() = 0;
};

}  // namespace platform
