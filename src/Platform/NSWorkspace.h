#pragma once

#include "Platform/NSScreen.h"
#include "Platform/URL.h"

#include <optional>
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
  /// The file of the picture that the user has on the desktop there, as an absolute path; nothing where there
  /// is none, or none that can be found out. Whether it is a picture is for its reader to see.
  virtual std::optional<std::string> desktopImageURLForScreen(const NSScreen& screen) = 0;
  /// Shows the file at `path` (absolute) in the desktop's file manager, selected; else its folder.
  virtual void activateFileViewerSelecting(const std::string& path) = 0;
  /// Shows a notice, where the desktop has a place for such; else nothing happens.
  virtual void deliver(NSUserNotification notification) = 0;
  /// The desktop's sound for a key that can't be taken.
  virtual void beep() = 0;
};

}  // namespace platform
