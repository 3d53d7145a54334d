#pragma once

#include "Markdown/ModifierType.h"
#include "Platform/Alive.h"
#include "Platform/NSTextView.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// Puts Markdown into an editor, as if it were pasted over the selection: one step of undo. Nothing is ever
/// taken back; a second click wraps the text again.
///
/// What is wrapped is the selection, else what is on the general pasteboard; the pasteboard is empty after
/// every insertion. Both belong to the design. Reading what another program has put there takes a moment:
/// keys and further clicks wait for it, in their order. If the editor has no room for the text, nothing
/// changes, and the pasteboard stays as it is. Main thread.
class MarkdownModifierHelper {
 public:
  /// `textView` outlives the helper.
  explicit MarkdownModifierHelper(platform::NSTextView& textView) noexcept : textView_(textView) {}
  MarkdownModifierHelper(const MarkdownModifierHelper&) = delete;
  MarkdownModifierHelper& operator=(const MarkdownModifierHelper&) = delete;

  void modifierClicked(ModifierType type);
  void modifierCodeBlockClicked(ModifierType type);
  void modifierQuoteBlockClicked(ModifierType type);
  void modifierDividerClicked(ModifierType type);
  /// `level`: 1 to 6.
  void modifierHeaderClicked(int level);
  /// Also for `photo`: a selection becomes a plain link then, too.
  void modifierLinkClicked(ModifierType type);
  void modifierPhotoClicked(ModifierType type);
  /// Both counts are at least 1.
  void modifierTableClicked(int columns, int rows, bool showHeader);

  /// Rows of a table, each with the line feed at its end.
  static std::string getTableHeaderRow(ModifierTableRowType type, int columnCount);
  static std::string getTableDashRow(ModifierTableRowType type, int columnCount);
  static std::string getTableRow(ModifierTableRowType type, int columnCount, int rowNumber);

 private:
  using Selection = std::optional<std::string>;
  struct Insertion {
    std::string text;
    /// How far the cursor goes back from its end.
    std::size_t cursorLeft = 0;
  };
  struct Operation {
    std::function<Insertion(const Selection&)> insertion;
    /// Nothing of what is selected or on the pasteboard comes into the text.
    bool ignoresSelection = false;
  };

  void perform(Operation operation);
  void start(const Operation& operation);
  void insert(const Insertion& insertion);
  void readingIsOver();
  void wrapAsLink(ModifierType type, std::string_view opening);

  platform::NSTextView& textView_;
  /// While the pasteboard is read: what comes after.
  std::deque<Operation> waiting_;
  std::shared_ptr<void> heldKeys_;
  bool isReading_ = false;
  platform::Alive isAlive_;
};

}  // namespace velkin
