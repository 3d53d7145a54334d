#include "Platform/Gtk/GtkTextEditor.h"
#include "Platform/NSApplication.h"
#include "Platform/NSPasteboard.h"
#include "gtk/ClipboardOwner.h"
#include "gtk/GtkFixture.h"

#include <memory>
#include <string>
#include <vector>

#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

using Failure = NSPasteboardReading::Failure;

class GtkPasteboardTest : public GtkFixture {
 protected:
  void SetUp() override {
    if (!GDK_IS_X11_DISPLAY(gdk_display_get_default()))
      GTEST_SKIP() << "the other owners here are clients of X";
    // So that the next owner is news.
    board().setString("ours", NSPasteboardTypeString);
    turn();
  }
  NSPasteboard& board() { return NSPasteboard::generalPasteboard(); }
  void read() {
    board().readItems([this](const NSPasteboardReading& reading) { readings.push_back(reading); });
  }
  NSPasteboardReading readNow() {
    const auto count = readings.size() + 1;
    read();
    EXPECT_TRUE(wait([&] { return readings.size() == count; }));
    return readings.empty() ? NSPasteboardReading() : readings.back();
  }
  /// Until the toolkit has heard of the new owner.
  void untilForeign() {
    auto* clipboard = gdk_display_get_clipboard(gdk_display_get_default());
    ASSERT_TRUE(wait([&] { return gdk_clipboard_is_local(clipboard) == FALSE; }));
  }
  /// Until the toolkit has heard what the new owner has.
  void untilTold() {
    untilForeign();
    ASSERT_TRUE(wait(isTextOnClipboard));
  }

  std::vector<NSPasteboardReading> readings;
};

TEST_F(GtkPasteboardTest, ReadingsAreOfTheirMomentAndInOrder) {
  board().setString("one", NSPasteboardTypeString);
  read();
  board().clearContents();
  read();
  board().setString("two", NSPasteboardTypeString);
  read();
  EXPECT_TRUE(readings.empty());
  ASSERT_TRUE(wait([&] { return readings.size() == 3; }));
  EXPECT_EQ(readings[0].string(), "one");
  EXPECT_TRUE(readings[1].items.empty());
  EXPECT_EQ(readings[2].string(), "two");
}

TEST_F(GtkPasteboardTest, WhatTheFocusedEditorCopiesIsThereAtOnce) {
  GtkTextEditor editor;
  show(editor.widget());
  editor.setString("copy me", NSTextView::UndoHistory::kept);
  editor.setSelectedRange({0, 4});
  editor.makeFirstResponder();
  ASSERT_TRUE(wait([&] { return gtk_window_is_active(window) != FALSE; }));
  board().setString("earlier", NSPasteboardTypeString);
  EXPECT_TRUE(NSApp().sendAction("copy:"));
  read();
  editor.setSelectedRange({2, 0});
  EXPECT_TRUE(NSApp().sendAction("copy:"));
  read();
  ASSERT_TRUE(wait([&] { return readings.size() == 2; }));
  EXPECT_EQ(readings[0].string(), "copy");
  EXPECT_EQ(readings[1].string(), "copy") << "with nothing selected the pasteboard is kept";
  board().setString("pasted", NSPasteboardTypeString);
  editor.setSelectedRange({0, 4});
  EXPECT_TRUE(NSApp().sendAction("paste:"));
  ASSERT_TRUE(wait([&] { return editor.string() == "pasted me"; }));
  editor.undo();
  EXPECT_EQ(editor.string(), "copy me");
  gtk_box_remove(GTK_BOX(gtk_window_get_child(window)), editor.widget());
}

TEST_F(GtkPasteboardTest, ATextOfAnotherProgramIsReadAsItsCharacters) {
  const ClipboardOwner owner("UTF8_STRING", "ä😀");
  untilForeign();
  EXPECT_EQ(readNow().string(), "ä😀");
}

TEST_F(GtkPasteboardTest, BrokenTextIsAValueToo) {
  const ClipboardOwner owner("UTF8_STRING", std::string("a\0b\xFF"
                                                        "c\0",
                                                        6));
  untilForeign();
  EXPECT_EQ(readNow().string(), "a\uFFFDb\uFFFDc");
}

TEST_F(GtkPasteboardTest, APictureIsAnItemWithoutText) {
  const ClipboardOwner owner("image/png", "\x89PNG");
  untilForeign();
  const auto reading = readNow();
  ASSERT_EQ(reading.items.size(), 1U);
  EXPECT_FALSE(reading.string().has_value());
  EXPECT_FALSE(reading.failure.has_value());
}

TEST_F(GtkPasteboardTest, AnOwnerThatNeverAnswersFailsAndKeepsTheOrder) {
  ClipboardOwner owner("UTF8_STRING", "never");
  owner.staysSilent = true;
  untilTold();
  read();
  board().setString("after", NSPasteboardTypeString);
  read();
  ASSERT_TRUE(wait([&] { return readings.size() == 2; }));
  EXPECT_EQ(readings[0].failure, Failure::noAnswer);
  EXPECT_EQ(readings[1].string(), "after");
  const ClipboardOwner next("UTF8_STRING", "next");
  untilTold();
  EXPECT_EQ(readNow().string(), "next");
}

TEST_F(GtkPasteboardTest, WhoeverTakesTheClipboardFromOneThatDoesntTellItsKindsEndsTheWait) {
  const ClipboardOwner silent;
  untilForeign();
  read();
  board().setString("after", NSPasteboardTypeString);
  ASSERT_TRUE(wait([&] { return readings.size() == 1; }));
  EXPECT_EQ(readings[0].failure, Failure::noAnswer);
  EXPECT_EQ(readNow().string(), "after");
}

TEST_F(GtkPasteboardTest, AnOwnerThatNeverGivesWhatItToldCostsTheNextReadingNothing) {
  {
    ClipboardOwner silent("UTF8_STRING", "never");
    silent.staysSilent = true;
    untilTold();
    EXPECT_EQ(readNow().failure, Failure::noAnswer);
  }
  board().setString("ours", NSPasteboardTypeString);
  const ClipboardOwner owner("UTF8_STRING", "given");
  untilTold();
  EXPECT_EQ(readNow().string(), "given");
}

TEST_F(GtkPasteboardTest, AnOwnerThatDoesntEvenTellItsKindsFails) {
  const ClipboardOwner owner;
  untilForeign();
  EXPECT_EQ(readNow().failure, Failure::noAnswer);
  board().clearContents();
}

}  // namespace
}  // namespace platform
