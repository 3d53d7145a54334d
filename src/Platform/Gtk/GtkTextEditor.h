#pragma once

#include "Platform/Alive.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkStyle.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/NSTextView.h"

#include <memory>
#include <optional>
#include <string>

#include <gtk/gtk.h>

namespace platform {

/// The toolkit's text view in a scrolled window. Typing, input methods, selection by the pointer, the primary
/// selection and the emoji chooser are the toolkit's; pasting and dropping files are ours, for their limits.
/// Main thread.
class GtkTextEditor : public NSTextView, public GtkViewBase {
 public:
  GtkTextEditor();
  ~GtkTextEditor() override;
  GtkTextEditor(const GtkTextEditor&) = delete;
  GtkTextEditor& operator=(const GtkTextEditor&) = delete;

  GtkWidget* widget() override { return scrolled_.get(); }
  NSRect frame() const override;
  void makeFirstResponder() override;
  void addSubview(NSView&, std::optional<NSSize>) override {}
  void removeSubview(NSView&) override {}

  std::string string() const override;
  bool setString(const std::string& text, UndoHistory history) override;
  NSRange selectedRange() const override;
  void setSelectedRange(NSRange range) override;
  bool insertText(const std::string& text, NSRange replacementRange) override;
  bool canUndo() const override;
  bool canRedo() const override;
  void undo() override;
  void redo() override;
  std::shared_ptr<void> holdKeys() override;
  void setFont(SystemFont font) override;
  void setTextColor(std::optional<Color> color) override;
  void setAccessibilityLabel(const std::string& label) override;

  /// Inserts a file's text at `offset`, once it is read. What a file manager drops comes here.
  void insertFile(GFile* file, std::size_t offset);

 private:
  struct FileReading;
  void connectBuffer();
  void connectView();
  void beginStep() { ++stepDepth_; }
  void endStep();
  void paste();
  void refuse(Refusal reason);
  bool hasRoomFor(std::size_t bytes) const;
  void fileRead(const FileReading& reading, const std::string& bytes);
  void showCursor();
  GtkTextView* view() const { return GTK_TEXT_VIEW(editor_); }

  GObjectPtr<GtkWidget> scrolled_;
  GtkWidget* editor_;
  GObjectPtr<GtkTextBuffer> buffer_;
  GtkStyle style_;
  Modifiers look_;
  Alive isAlive_;
  int stepDepth_ = 0;
  bool isChangedInStep_ = false;
};

}  // namespace platform
