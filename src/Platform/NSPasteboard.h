#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The type of plain text on a pasteboard.
inline constexpr std::string_view NSPasteboardTypeString = "public.utf8-plain-text";

/// What copy and paste go through. Main thread.
class NSPasteboard {
 public:
  /// The one that the user's programs share.
  static NSPasteboard& generalPasteboard();
  virtual ~NSPasteboard() = default;

  virtual void clearContents() = 0;
  /// Plain text is the only type; another is refused. False if it was not taken.
  virtual bool setString(const std::string& text, std::string_view type) = 0;
};

}  // namespace platform
