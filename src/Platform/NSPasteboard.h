#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The type of plain text on a pasteboard.
inline constexpr std::string_view NSPasteboardTypeString = "public.utf8-plain-text";

/// One thing on a pasteboard.
struct NSPasteboardItem {
  /// Well-formed UTF-8 without NUL; U+FFFD stands for what wasn't. Nothing if the item isn't text: a picture.
  std::optional<std::string> string;
};

/// What was on a pasteboard when it was asked.
struct NSPasteboardReading {
  enum class Failure {
    /// Its owner didn't answer in time.
    noAnswer,
    /// A text of more than `NSPasteboard::maximumBytes`.
    tooLong,
    /// Its owner began to answer and broke off.
    unreadable
  };

  /// Empty after a failure, and when there is nothing.
  std::vector<NSPasteboardItem> items;
  std::optional<Failure> failure;

  /// The last item's; nothing if there is no item, or the last one isn't text.
  std::optional<std::string> string() const { return items.empty() ? std::nullopt : items.back().string; }
};

/// What copy and paste go through. Main thread.
class NSPasteboard {
 public:
  /// The one that the user's programs share.
  static NSPasteboard& generalPasteboard();
  virtual ~NSPasteboard() = default;

  static constexpr std::size_t maximumBytes = std::size_t{16} << 20;
  /// How long an owner has to answer, in seconds.
  static constexpr double patience = 2;

  using Completion = std::function<void(const NSPasteboardReading&)>;

  virtual void clearContents() = 0;
  /// Plain text is the only type; another is refused. False if it was not taken.
  virtual bool setString(const std::string& text, std::string_view type) = 0;

  /// Reads what is on it now; what is written later, also in this very turn, doesn't count. `completion` runs
  /// in a later turn of the main loop, those of several readings in the order in which they were asked for.
  virtual void readItems(Completion completion) = 0;
};

}  // namespace platform
