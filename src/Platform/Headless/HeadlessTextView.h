#pragma once

#include "Platform/Alive.h"
#include "Platform/NSTextView.h"

#include <string>
#include <vector>

namespace platform {

/// A text in memory, and a user's hands on it.
class HeadlessTextView : public NSTextView {
 public:
  ~HeadlessTextView() override { isAlive_.end(); }

  SystemFont font;
  std::optional<Color> textColor;
  std::string accessibilityLabel;
  bool isFirstResponder = false;

  NSRect frame() const override { return {}; }
  void makeFirstResponder() override { isFirstResponder = true; }
  void addSubview(NSView&, std::optional<NSSize>) override {}
  void removeSubview(NSView&) override {}

  std::string string() const override;
  bool setString(const std::string& text, UndoHistory history) override;
  NSRange selectedRange() const override { return now_.selection; }
  void setSelectedRange(NSRange range) override;
  bool insertText(const std::string& text, NSRange replacementRange) override;
  bool canUndo() const override { return !earlier_.empty(); }
  bool canRedo() const override { return !later_.empty(); }
  void undo() override { travel(earlier_, later_); }
  void redo() override { travel(later_, earlier_); }
  std::shared_ptr<void> holdKeys() override;
  void setFont(SystemFont systemFont) override { font = systemFont; }
  void setTextColor(std::optional<Color> color) override { textColor = color; }
  void setAccessibilityLabel(const std::string& label) override { accessibilityLabel = label; }

  /// As a user's typing or pasting over the selection, as one step. While keys are held, it waits with them.
  bool type(const std::string& text);
  std::string selectedText() const;
  /// Does what the edit actions "copy:", "cut:", "paste:", "selectAll:", "undo:" and "redo:" do to an editor
  /// that has the keyboard; false for others. Copying with nothing selected keeps the pasteboard.
  bool perform(const std::string& selector);

 private:
  struct Moment {
    std::u32string text;
    NSRange selection;
  };
  NSRange cut(NSRange range) const;
  void change(Moment next);
  void travel(std::vector<Moment>& from, std::vector<Moment>& to);
  bool isTooLong(const std::u32string& text);
  void handBackHeldKeys();

  std::weak_ptr<void> hold_;
  std::vector<std::string> heldKeys_;
  Alive isAlive_;
  Moment now_;
  std::vector<Moment> earlier_;
  std::vector<Moment> later_;
};

}  // namespace platform
