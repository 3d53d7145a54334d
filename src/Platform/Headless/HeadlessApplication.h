#pragma once

#include "Platform/NSApplication.h"

#include <optional>

namespace platform {

/// Ends a test's flow where the process would have ended.
struct ExitCalled {
  int code;
};

/// Launches the delegate and returns; `exit` throws `ExitCalled`.
class HeadlessApplication : public NSApplication {
 public:
  NSApplicationDelegate* delegate = nullptr;

  int run(NSApplicationDelegate& applicationDelegate) override {
    delegate = &applicationDelegate;
    delegate->applicationDidFinishLaunching();
    return 0;
  }
  [[noreturn]] void exit(int code) override { throw ExitCalled{code}; }
};

}  // namespace platform
