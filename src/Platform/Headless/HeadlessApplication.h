#pragma once

#include "Platform/NSApplication.h"

#include <functional>
#include <string>
#include <vector>

namespace platform {

/// Ends a test's flow where the process would have ended.
struct ExitCalled {
  int code;
};

/// Launches the delegate and returns; `exit` throws `ExitCalled`.
class HeadlessApplication : public NSApplication {
 public:
  NSApplicationDelegate* delegate = nullptr;
  /// What has the keyboard: takes an action or doesn't. Without one, nothing takes any.
  std::function<bool(const std::string& selector)> responder;
  std::vector<std::string> sentActions;

  int run(NSApplicationDelegate& applicationDelegate) override {
    delegate = &applicationDelegate;
    delegate->applicationDidFinishLaunching();
    return 0;
  }
  [[noreturn]] void exit(int code) override { throw ExitCalled{code}; }
  bool isEditingText = false;
  bool isTextBeingEdited() const override { return isEditingText; }
  bool takesReservedKeys = false;
  void setTakesReservedKeys(bool takes) override { takesReservedKeys = takes; }
  bool sendAction(std::string_view selector) override {
    sentActions.emplace_back(selector);
    return responder && responder(sentActions.back());
  }
};

}  // namespace platform
