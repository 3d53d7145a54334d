#pragma once

#include "Platform/DispatchQueue.h"
#include "Platform/SystemServices.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Remembers what it was asked for, and answers as a test wants it to.
class HeadlessSystemServices : public SystemServices {
 public:
  /// What was asked for, in order.
  std::vector<std::pair<std::string, bool>> loginItemCalls;
  bool canSetLoginItems = true;
  std::vector<CGWindow> windows;
  std::vector<int> activated;
  std::vector<ScreenCapture> captures;
  /// What the next picture gives, in a later turn.
  tl::expected<std::string, NSError> picture = std::string("file:///pictures/one.png");
  std::vector<std::pair<std::string, NSPrintInfo>> printed;
  std::optional<NSError> printError;

  bool setLoginItemEnabled(const std::string& identifier, bool isEnabled) override {
    loginItemCalls.emplace_back(identifier, isEnabled);
    return canSetLoginItems;
  }
  std::vector<CGWindow> windowsOnScreen() override { return windows; }
  void activate(int processIdentifier) override { activated.push_back(processIdentifier); }
  void captureScreen(const ScreenCapture& capture,
                     std::function<void(tl::expected<std::string, NSError>)> completion) override {
    captures.push_back(capture);
    DispatchQueue::main().async(
        [completion = std::move(completion), result = picture] { completion(result); });
  }
  void printDocument(const std::string& pdf, const NSPrintInfo& info,
                     std::function<void(std::optional<NSError>)> ended) override {
    printed.emplace_back(pdf, info);
    DispatchQueue::main().async([ended = std::move(ended), error = printError] { ended(error); });
  }
};

}  // namespace platform
