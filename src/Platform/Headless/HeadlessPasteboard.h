#pragma once

#include "Platform/NSPasteboard.h"

#include <optional>
#include <string>

namespace platform {

/// A pasteboard that a test looks at.
class HeadlessPasteboard : public NSPasteboard {
 public:
  /// Nothing while it is clear.
  std::optional<std::string> string;

  void clearContents() override { string.reset(); }
  bool setString(const std::string& text, std::string_view type) override {
    if (type != NSPasteboardTypeString) return false;
    string = text;
    return true;
  }
};

}  // namespace platform
