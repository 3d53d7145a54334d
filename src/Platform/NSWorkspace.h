#pragma once

#include "Platform/URL.h"

#include <functional>
#include <string>
#include <vector>

namespace platform {

struct NSRunningApplication {
  std::string bundleIdentifier;
};

/// A notice that the desktop shows for a while, beside whatever the user does.
struct NSUserNotification {
  std::string title;
  std::string informativeText;
  /// What the notice offers to do; empty if it only tells.
  std::string actionButtonTitle = {};
  /// Run when the user clicks the notice or its button.
  std::function<void()> action = {};
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
  /// Shows a notice, where the desktop has a place for such; else nothing happens.
  virtual void deliver(NSUserNotification notification) = 0;
  /// The desktop's sound for a key that can't be taken.
  virtual void beep() = 0;
};

}  // namespace platform
