#include "Platform/Gtk/GtkTextEditor.h"
#include "Platform/NSApplication.h"
#include "Platform/NSPasteboard.h"
#include "gtk/GtkFixture.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <X11/Xatom.h>
#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

using Failure = NSPasteboardReading::Failure;

/// Another program that has the clipboard, on a connection of its own.
class Owner {
 public:
  /// What it answers is up to `answer`; nothing at all if there is none.
  explicit Owner(const char* answerType = nullptr, std::string answerBytes = {})
      : display_(XOpenDisplay(nullptr)), type_(answerType), bytes_(std::move(answerBytes)) {
    clipboard_ = XInternAtom(display_, "CLIPBOARD", False);
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
    XSetSelectionOwner(display_, clipboard_, window_, CurrentTime);
    XSync(display_, False);
    source_ = g_timeout_add(
        5,
        [](gpointer self) -> gboolean {
          static_cast<Owner*>(self)->serve();
          return G_SOURCE_CONTINUE;
        },
        this);
  }
  ~Owner() {
    g_source_remove(source_);
    XCloseDisplay(display_);
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

 private:
  void serve() {
    while (XPending(display_) > 0) {
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type != SelectionRequest || type_ == nullptr) continue;
      const auto& request = event.xselectionrequest;
      const Atom targets = XInternAtom(display_, "TARGETS", False);
      const Atom type = XInternAtom(display_, type_, False);
      Atom property = request.property;
      if (request.target == targets) {
        XChangeProperty(display_, request.requestor, property, XA_ATOM, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&type), 1);
      } else if (request.target == type && !staysSilent) {
        XChangeProperty(display_, request.requestor, property, type, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(bytes_.data()),
                        static_cast<int>(bytes_.size()));
      } else if (staysSilent) {
        continue;
      } else {
        property = None;
      }
      XEvent answer;
      std::memset(&answer, 0, sizeof(answer));
      answer.xselection.type = SelectionNotify;
      answer.xselection.requestor = request.requestor;
      answer.xselection.selection = request.selection;
      answer.xselection.target = request.target;
      answer.xselection.property = property;
      answer.xselection.time = request.time;
      XSendEvent(display_, request.requestor, False, 0, &answer);
      XFlush(display_);
    }
  }

 public:
  /// It tells what it has, and never gives it.
  bool staysSilent = false;

 private:
  Display* display_;
  const char* type_;
  std::string bytes_;
  Atom clipboard_ = None;
  Window window_ = None;
  guint source_ = 0;
};

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
  const Owner owner("UTF8_STRING", "ä😀");
  untilForeign();
  EXPECT_EQ(readNow().string(), "ä😀");
}

TEST_F(GtkPasteboardTest, BrokenTextIsAValueToo) {
  const Owner owner("UTF8_STRING", std::string("a\0b\xFF"
                                               "c\0",
                                               6));
  untilForeign();
  EXPECT_EQ(readNow().string(), "a\uFFFDb\uFFFDc");
}

TEST_F(GtkPasteboardTest, APictureIsAnItemWithoutText) {
  const Owner owner("image/png", "\x89PNG");
  untilForeign();
  const auto reading = readNow();
  ASSERT_EQ(reading.items.size(), 1U);
  EXPECT_FALSE(reading.string().has_value());
  EXPECT_FALSE(reading.failure.has_value());
}

TEST_F(GtkPasteboardTest, AnOwnerThatNeverAnswersFailsAndKeepsTheOrder) {
  Owner owner("UTF8_STRING", "never");
  owner.staysSilent = true;
  untilForeign();
  read();
  board().setString("after", NSPasteboardTypeString);
  read();
  ASSERT_TRUE(wait([&] { return readings.size() == 2; }));
  EXPECT_EQ(readings[0].failure, Failure::noAnswer);
  EXPECT_EQ(readings[1].string(), "after");
}

TEST_F(GtkPasteboardTest, AnOwnerThatDoesntEvenTellItsKindsFails) {
  const Owner owner;
  untilForeign();
  EXPECT_EQ(readNow().failure, Failure::noAnswer);
  board().clearContents();
}

}  // namespace
}  // namespace platform
