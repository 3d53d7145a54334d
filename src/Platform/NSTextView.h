#pragma once

#include "Platform/NSView.h"
#include "Platform/View/View.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

/// A part of a text, counted in Unicode code points.
struct NSRange {
  std::size_t location = 0;
  std::size_t length = 0;
  bool operator==(const NSRange&) const = default;
};

/// An editor of plain text. It is made once and outlives the descriptions in which it stands: text,
/// selection, scroll position and undo stay while it moves from one place to another. Texts are UTF-8; what
/// isn't well-formed, and each NUL, becomes U+FFFD. Lines end with a line feed. Main thread.
class NSTextView : public NSView {
 public:
  static std::unique_ptr<NSTextView> make();

  /// The longest text that it holds. What would make it longer is refused as a whole.
  static constexpr std::size_t maximumBytes = std::size_t{16} << 20;

  enum class UndoHistory { kept, forgotten };
  /// Why something that the user brought wasn't inserted. Nothing has changed then.
  enum class Refusal { tooLong, notText, unreadable, noAnswer };

  /// Called once after every step that changes the text, whoever makes it: a key, a paste, undo, the program.
  std::function<void()> textDidChange;
  std::function<void(Refusal)> didRefuse;

  virtual std::string string() const = 0;
  /// Replaces the whole text. Undo brings the earlier one back, unless it is to be forgotten with all before
  /// it. A text that it has already is left alone. False if it was refused.
  virtual bool setString(const std::string& text, UndoHistory history = UndoHistory::kept) = 0;

  virtual NSRange selectedRange() const = 0;
  /// What lies beyond the end is cut off. The cursor is at the range's end, and in view.
  virtual void setSelectedRange(NSRange range) = 0;

  /// Puts `text` in the place of a part, as one step of undo of its own; the cursor stands behind it, and in
  /// view. False if it was refused.
  virtual bool insertText(const std::string& text, NSRange replacementRange) = 0;

  virtual bool canUndo() const = 0;
  virtual bool canRedo() const = 0;
  /// Nothing happens if there is nothing to undo or to redo.
  virtual void undo() = 0;
  virtual void redo() = 0;

  /// Has the keys wait that are pressed from now on, until all copies of the result are gone, and for three
  /// seconds at the most: what is under way comes before what is typed behind it.
  [[nodiscard]] virtual std::shared_ptr<void> holdKeys() = 0;

  virtual void setFont(SystemFont font) = 0;
  /// nullopt: the desktop's own for text.
  virtual void setTextColor(std::optional<Color> color) = 0;
  /// The name by which assistive tools and tests find it.
  virtual void setAccessibilityLabel(const std::string& label) = 0;
};

/// The place of `textView`, which outlives it, in a description.
View TextView(NSTextView& textView);

}  // namespace platform
