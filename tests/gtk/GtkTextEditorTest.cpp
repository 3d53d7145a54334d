#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkTextEditor.h"
#include "Platform/View/State.h"
#include "gtk/GtkFixture.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace platform {
namespace {

class GtkTextEditorTest : public GtkFixture {
 protected:
  GtkTextEditorTest() {
    editor->textDidChange = [this] { texts.push_back(editor->string()); };
    editor->didRefuse = [this](NSTextView::Refusal reason) { refusals.push_back(reason); };
    folder = std::filesystem::temp_directory_path() / ("velkin-editor-" + std::to_string(g_random_int()));
    std::filesystem::create_directories(folder);
  }
  ~GtkTextEditorTest() override {
    if (window != nullptr) {
      gtk_window_set_child(window, nullptr);
      turn();
    }
    hosting.reset();
    editor.reset();
    std::filesystem::remove_all(folder);
  }
  GtkWidget* textView() { return all(editor->widget(), GTK_TYPE_TEXT_VIEW).front(); }
  GtkTextBuffer* buffer() { return gtk_text_view_get_buffer(GTK_TEXT_VIEW(textView())); }
  /// As a key of the user's.
  void type(const std::string& text) { g_signal_emit_by_name(textView(), "insert-at-cursor", text.c_str()); }
  void drop(const std::string& bytes) {
    const auto path = folder / "dropped.txt";
    std::ofstream(path, std::ios::binary) << bytes;
    dropPath(path);
  }
  void dropPath(const std::filesystem::path& path) {
    const auto file = GObjectPtr<GFile>::adopt(g_file_new_for_path(path.c_str()));
    editor->insertFile(file.get(), editor->selectedRange().location);
  }

  std::unique_ptr<GtkTextEditor> editor = std::make_unique<GtkTextEditor>();
  std::unique_ptr<GtkHostingView> hosting;
  std::vector<std::string> texts;
  std::vector<NSTextView::Refusal> refusals;
  std::filesystem::path folder;
};

using Texts = std::vector<std::string>;
using Refusals = std::vector<NSTextView::Refusal>;
using History = NSTextView::UndoHistory;

TEST_F(GtkTextEditorTest, AnInsertionIsAStepOfItsOwnBetweenWhatIsTyped) {
  show(editor->widget());
  type("a");
  type("b");
  editor->insertText("**x**", {2, 0});
  type("c");
  EXPECT_EQ(editor->string(), "ab**x**c");
  editor->undo();
  EXPECT_EQ(editor->string(), "ab**x**");
  editor->undo();
  EXPECT_EQ(editor->string(), "ab");
  editor->redo();
  EXPECT_EQ(editor->string(), "ab**x**");
}

TEST_F(GtkTextEditorTest, ReplacingASelectionIsOneStepAndToldOnce) {
  editor->setString("aä😀b", History::forgotten);
  EXPECT_FALSE(editor->canUndo());
  texts.clear();
  editor->insertText("X", {2, 1});
  EXPECT_EQ(editor->string(), "aäXb");
  EXPECT_EQ(editor->selectedRange(), (NSRange{3, 0}));
  editor->undo();
  EXPECT_EQ(texts, (Texts{"aäXb", "aä😀b"}));
}

TEST_F(GtkTextEditorTest, ATextFromOutsideKeepsUndo) {
  editor->setString("one two three", History::kept);
  editor->setString("one 2 three", History::kept);
  editor->undo();
  EXPECT_EQ(editor->string(), "one two three");
  editor->redo();
  EXPECT_EQ(editor->string(), "one 2 three");
  EXPECT_EQ(texts, (Texts{"one two three", "one 2 three", "one two three", "one 2 three"}));
}

TEST_F(GtkTextEditorTest, ATextFromOutsideLeavesACursorElsewhereAlone) {
  editor->setString("äöü one", History::forgotten);
  editor->setSelectedRange({1, 1});
  editor->setString("äöü two", History::kept);
  EXPECT_EQ(editor->string(), "äöü two");
  EXPECT_EQ(editor->selectedRange(), (NSRange{1, 1}));
  editor->setString("äö", History::kept);
  EXPECT_EQ(editor->string(), "äö");
  editor->setString("äöäö", History::kept);
  EXPECT_EQ(editor->string(), "äöäö");
}

struct Around {
  NSTextView* editor;
  State<int> count{0};
  View body() const {
    return VStack({Text(std::to_string(count.get())), TextView(*editor),
                   when(count.get() > 0, [] { return Text("more"); })});
  }
};

TEST_F(GtkTextEditorTest, TextCursorScrollAndUndoOutliveARebuiltDescription) {
  const Around around{editor.get()};
  hosting = std::make_unique<GtkHostingView>(around);
  show(hosting->widget(), 300, 200);
  std::string lines;
  for (int i = 0; i < 200; ++i) lines += "line " + std::to_string(i) + "\n";
  editor->setString(lines, History::kept);
  editor->setSelectedRange({900, 3});
  const auto showsCursor = [&] {
    GdkRectangle visible;
    GdkRectangle cursor;
    gtk_text_view_get_visible_rect(GTK_TEXT_VIEW(textView()), &visible);
    gtk_text_view_get_cursor_locations(GTK_TEXT_VIEW(textView()), nullptr, &cursor, nullptr);
    return visible.height > 0 && cursor.y >= visible.y &&
           cursor.y + cursor.height <= visible.y + visible.height;
  };
  ASSERT_TRUE(wait(showsCursor));
  editor->makeFirstResponder();
  around.count.set(1);
  turn();
  EXPECT_EQ(gtk_root_get_focus(GTK_ROOT(window)), textView());

  // And another description altogether, as at a switch of views.
  gtk_box_remove(GTK_BOX(gtk_widget_get_parent(hosting->widget())), hosting->widget());
  auto next = std::make_unique<GtkHostingView>(VStack({Text("title"), HStack({TextView(*editor)})}));
  hosting = std::move(next);
  gtk_box_append(GTK_BOX(gtk_window_get_child(window)), hosting->widget());
  ASSERT_TRUE(
      wait([&] { return gtk_widget_get_mapped(textView()) && gtk_widget_get_height(textView()) > 0; }));
  turn();
  EXPECT_EQ(editor->selectedRange(), (NSRange{900, 3}));
  EXPECT_TRUE(wait(showsCursor));
  EXPECT_TRUE(editor->canUndo());
  editor->undo();
  EXPECT_EQ(editor->string(), "");
}

TEST_F(GtkTextEditorTest, FontAndColourAreTheEditors) {
  show(editor->widget());
  editor->setFont({.size = 40, .weight = FontWeight::light, .design = FontDesign::monospaced});
  editor->setTextColor(Color::rgb(1, 0, 0));
  editor->setString("x", History::kept);
  turn();
  const auto description = [&] {
    return pango_context_get_font_description(gtk_widget_get_pango_context(textView()));
  };
  ASSERT_TRUE(wait([&] { return pango_font_description_get_size(description()) == 40 * PANGO_SCALE; }));
  EXPECT_EQ(pango_font_description_get_weight(description()), PANGO_WEIGHT_LIGHT);
  EXPECT_STREQ(pango_font_description_get_family(description()), "monospace");
  GdkRGBA color;
  gtk_style_context_get_color(gtk_widget_get_style_context(textView()), &color);
  EXPECT_FLOAT_EQ(color.red, 1);
  EXPECT_FLOAT_EQ(color.green, 0);
}

/// Whether the line wraps between any two characters.
bool wrapsAnywhere(GtkTextBuffer* buffer, int line) {
  GtkTextIter start;
  gtk_text_buffer_get_iter_at_line(buffer, &start, line);
  GSList* tags = gtk_text_iter_get_tags(&start);
  GtkWrapMode mode = GTK_WRAP_NONE;
  if (tags != nullptr) g_object_get(tags->data, "wrap-mode", &mode, nullptr);
  g_slist_free(tags);
  return mode == GTK_WRAP_CHAR;
}

TEST_F(GtkTextEditorTest, AWordThatNoLayoutComesToAnEndWithWrapsAnywhere) {
  const std::string word(1001, 'x');
  editor->setString("before\n" + word + "\nbehind " + std::string(1000, 'y'), History::kept);
  EXPECT_FALSE(wrapsAnywhere(buffer(), 0));
  EXPECT_TRUE(wrapsAnywhere(buffer(), 1));
  EXPECT_FALSE(wrapsAnywhere(buffer(), 2));
  // Typed, it becomes two words; and the next key makes them one again.
  ASSERT_TRUE(editor->insertText(" ", {7 + 500, 0}));
  EXPECT_FALSE(wrapsAnywhere(buffer(), 1));
  ASSERT_TRUE(editor->insertText("", {7 + 500, 1}));
  EXPECT_TRUE(wrapsAnywhere(buffer(), 1));
  ASSERT_TRUE(editor->insertText("z", {editor->string().size(), 0}));
  EXPECT_TRUE(wrapsAnywhere(buffer(), 2));
  editor->undo();
  EXPECT_FALSE(wrapsAnywhere(buffer(), 2));
  EXPECT_EQ(editor->string(), "before\n" + word + "\nbehind " + std::string(1000, 'y'));
}

TEST_F(GtkTextEditorTest, ADroppedTextFileIsInsertedWhereItFell) {
  editor->setString("ab", History::forgotten);
  editor->setSelectedRange({1, 0});
  drop("\xEF\xBB\xBFone\r\ntwo\n");
  // What is typed in the meantime moves the place with it.
  editor->insertText("> ", {0, 0});
  ASSERT_TRUE(wait([&] { return texts.size() == 3; }));
  EXPECT_EQ(editor->string(), "> aone\ntwo\nb");
  editor->undo();
  EXPECT_EQ(editor->string(), "> ab");
}

TEST_F(GtkTextEditorTest, WhatIsNoTextFileChangesNothing) {
  drop(std::string("bi\0nary", 7));
  ASSERT_TRUE(wait([&] { return refusals.size() == 1; }));
  drop("\xFF\xFE");
  ASSERT_TRUE(wait([&] { return refusals.size() == 2; }));
  dropPath(folder);
  ASSERT_TRUE(wait([&] { return refusals.size() == 3; }));
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  dropPath(folder / "pipe");
  ASSERT_TRUE(wait([&] { return refusals.size() == 4; }));
  dropPath(folder / "gone");
  ASSERT_TRUE(wait([&] { return refusals.size() == 5; }));
  EXPECT_EQ(refusals.back(), NSTextView::Refusal::unreadable);
  refusals.pop_back();
  EXPECT_EQ(refusals, Refusals(4, NSTextView::Refusal::notText));
  EXPECT_TRUE(texts.empty());
}

TEST_F(GtkTextEditorTest, MoreThanTheLimitIsRefusedAsAWhole) {
  const auto path = folder / "long.txt";
  std::ofstream(path).put('x');
  std::filesystem::resize_file(path, NSTextView::maximumBytes + 1);
  dropPath(path);
  ASSERT_TRUE(wait([&] { return refusals.size() == 1; }));
  EXPECT_FALSE(editor->insertText(std::string(NSTextView::maximumBytes + 1, 'x'), {0, 0}));
  // By the toolkit's own ways, too.
  gtk_text_buffer_insert_at_cursor(buffer(), std::string(NSTextView::maximumBytes + 1, 'x').c_str(), -1);
  EXPECT_EQ(refusals, Refusals(3, NSTextView::Refusal::tooLong));
  EXPECT_TRUE(texts.empty());
}

TEST_F(GtkTextEditorTest, AnEditorThatGoesWhileAFileIsReadIsLeftAlone) {
  drop("late");
  editor.reset();
  turn();
  editor = std::make_unique<GtkTextEditor>();
}

}  // namespace
}  // namespace platform
