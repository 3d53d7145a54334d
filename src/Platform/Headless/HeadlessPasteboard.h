#pragma once

#include "Platform/DispatchQueue.h"
#include "Platform/NSPasteboard.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// A pasteboard that a test looks at.
class HeadlessPasteboard : public NSPasteboard {
 public:
  /// The last item; nothing while the pasteboard is clear.
  std::optional<std::string> string;
  /// What else is on it, before that: another program may have put several things there, or a picture.
  std::vector<NSPasteboardItem> otherItems;
  /// How the next readings fail.
  std::optional<NSPasteboardReading::Failure> failure;

  void clearContents() override {
    string.reset();
    otherItems.clear();
  }
  bool setString(const std::string& text, std::string_view type) override {
    if (type != NSPasteboardTypeString) return false;
    string = text;
    return true;
  }
  void readItems(Completion completion) override {
    NSPasteboardReading reading{.items = {}, .failure = failure};
    if (!failure) {
      reading.items = otherItems;
      if (string) reading.items.push_back({string});
    }
    DispatchQueue::main().async([reading = std::move(reading), completion = std::move(completion)] {
      if (completion) completion(reading);
    });
  }
};

}  // namespace platform
