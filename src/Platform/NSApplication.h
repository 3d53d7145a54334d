#pragma once

#include "Platform/NSEvent.h"

#include <functional>
#include <optional>

namespace platform {

/// Told of the program's beginning and end. Main thread.
class NSApplicationDelegate {
 public:
  virtual ~NSApplicationDelegate() = default;
  virtual void applicationDidFinishLaunching() = 0;
  virtual void applicationWillTerminate() = 0;
  /// The user started the program once more while it runs, or asked it over the desktop's bus to show itself.
  virtual void applicationDidReopen() = 0;
};

/// The running program.
class NSApplication {
 public:
  virtual ~NSApplication() = default;

  /// The event that is being handled; nothing outside of one.
  std::optional<NSEvent> currentEvent;

  /// Runs the main loop with `delegate` until the program is told to end; returns the exit code.
  virtual int run(NSApplicationDelegate& delegate) = 0;
  /// Ends the process with this code. Nothing is saved at this moment; nothing needs to be.
  [[noreturn]] virtual void exit(int code) = 0;
};

/// The application of the installed platform.
NSApplication& NSApp();

}  // namespace platform
