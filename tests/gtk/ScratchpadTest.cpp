#include "Markdown/MarkdownModifierHelper.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAssets.h"
#include "Platform/Gtk/GtkTextEditor.h"
#include "Platform/NSPasteboard.h"
#include "gtk/GtkFixture.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velkin {
namespace {

using namespace platform;
using enum ModifierType;

/// What the tool bars do to the toolkit's own editor and a real clipboard.
class ScratchpadTest : public GtkFixture {
 protected:
  ~ScratchpadTest() override {
    if (window != nullptr) {
      gtk_window_set_child(window, nullptr);
      turn();
    }
  }
  /// What is on the clipboard; nothing if it is empty.
  std::optional<std::string> clipboard() {
    std::optional<NSPasteboardReading> told;
    NSPasteboard::generalPasteboard().readItems([&](const NSPasteboardReading& reading) { told = reading; });
    EXPECT_TRUE(wait([&] { return told.has_value(); }));
    return told->string();
  }
  void write(const std::string& text, NSRange selection) {
    editor.setString(text, NSTextView::UndoHistory::forgotten);
    editor.setSelectedRange(selection);
  }
  /// The text, which is ASCII, with the cursor in it, once everything is done.
  std::string shown() {
    EXPECT_FALSE(clipboard().has_value());
    auto text = editor.string();
    return text.insert(editor.selectedRange().location, "|");
  }

  GtkTextEditor editor;
  MarkdownModifierHelper helper{editor};
};

TEST_F(ScratchpadTest, EachOperationIsOneStepAndEmptiesTheClipboard) {
  struct Row {
    std::function<void(MarkdownModifierHelper&)> click;
    std::string withSelection;
    std::string without;
  };
  const std::vector<Row> rows = {
      {[](auto& h) { h.modifierClicked(bold); }, "x**a**|y", "x**|**y"},
      {[](auto& h) { h.modifierClicked(italics); }, "x*a*|y", "x*|*y"},
      {[](auto& h) { h.modifierClicked(strikethrough); }, "x~~a~~|y", "x~~|~~y"},
      {[](auto& h) { h.modifierClicked(codeInline); }, "x`a`|y", "x`|`y"},
      {[](auto& h) { h.modifierCodeBlockClicked(codeBlock); }, "x\n\n```\na\n```|y", "x```\n|\n```y"},
      {[](auto& h) { h.modifierQuoteBlockClicked(quoteBlock); }, "x\n > a|y", "x\n > |y"},
      {[](auto& h) { h.modifierDividerClicked(divider); }, "x\n---\n|y", "x\n---\n|y"},
      {[](auto& h) { h.modifierHeaderClicked(2); }, "x[\n\n## a]|y", "x## |y"},
      {[](auto& h) { h.modifierLinkClicked(link); }, "x[a](|)y", "x[|]()y"},
      {[](auto& h) { h.modifierLinkClicked(photo); }, "x[a](|)y", "x![|]()y"},
      {[](auto& h) { h.modifierTableClicked(2, 1, false); }, "x| Row1 | Cell1 |\n|y",
       "x| Row1 | Cell1 |\n|y"}};
  show(editor.widget());
  NSPasteboard::generalPasteboard().clearContents();
  for (const auto& [click, withSelection, without] : rows) {
    write("xay", {1, 1});
    click(helper);
    EXPECT_EQ(shown(), withSelection);
    const auto after = editor.string();
    editor.undo();
    EXPECT_EQ(editor.string(), "xay");
    EXPECT_FALSE(editor.canUndo());
    editor.redo();
    EXPECT_EQ(editor.string(), after);
    write("xy", {1, 0});
    click(helper);
    EXPECT_EQ(shown(), without);
    editor.undo();
    EXPECT_EQ(editor.string(), "xy");
  }
}

TEST_F(ScratchpadTest, WhatIsOnTheClipboardIsWrappedOnce) {
  show(editor.widget());
  NSPasteboard::generalPasteboard().setString("ä😀", NSPasteboardTypeString);
  write("", {0, 0});
  helper.modifierClicked(bold);
  helper.modifierClicked(bold);
  EXPECT_TRUE(wait([&] { return editor.string().size() > 12; }));
  EXPECT_FALSE(clipboard().has_value());
  EXPECT_EQ(editor.string(), "**ä😀******");
  EXPECT_EQ(editor.selectedRange(), (NSRange{8, 0}));
}

TEST_F(ScratchpadTest, EverySymbolHasAnIconInTheColourOfItsText) {
  auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  gtk_icon_theme_add_search_path(theme, VELKIN_ICONS);
  for (const auto* symbol : {"textformat.size.smaller",
                             "textformat.size.larger",
                             "bold",
                             "italic",
                             "strikethrough",
                             "rectangle.bottomhalf.inset.filled",
                             "rectangle.righthalf.inset.filled",
                             "trash",
                             "h.square",
                             "tablecells",
                             "text.quote",
                             "ellipsis.curlybraces",
                             "text.aligncenter",
                             "line.diagonal",
                             "link",
                             "photo",
                             "doc.on.doc",
                             "clock.arrow.circlepath",
                             "xmark",
                             "1.square",
                             "2.square",
                             "3.square",
                             "4.square"}) {
    const auto name = iconNameOfSymbol(symbol);
    EXPECT_NE(name, symbol) << "it has no name in the theme";
    const auto icon = GObjectPtr<GtkIconPaintable>::adopt(gtk_icon_theme_lookup_icon(
        theme, name.c_str(), nullptr, 16, 1, GTK_TEXT_DIR_LTR, GtkIconLookupFlags{}));
    const auto file = GObjectPtr<GFile>::adopt(gtk_icon_paintable_get_file(icon.get()));
    ASSERT_TRUE(file) << symbol << ": " << name;
    const GStringPtr fileName(g_file_get_basename(file.get()));
    EXPECT_TRUE(std::string(fileName.get()).starts_with(name)) << symbol << ": " << fileName.get();
    EXPECT_TRUE(gtk_icon_paintable_is_symbolic(icon.get())) << symbol << " stays dark on a dark ground";
  }
}

}  // namespace
}  // namespace velkin
