#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/Gtk/TextComposition.h"
#include "Platform/NSApplication.h"
#include "Platform/NSPopover.h"
#include "gtk/GtkFixture.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

/// Dead keys, by the toolkit's own input method or the one that the session has.
class TextCompositionTest : public GtkFixture {
 protected:
  TextCompositionTest() : popover(NSPopover::make()) {
    run("setxkbmap us intl");
    // As the program's router takes them.
    monitor = NSApp().addLocalMonitor(
        NSEvent::mask(NSEvent::EventType::keyDown), [this](const NSEvent& event) -> std::optional<NSEvent> {
          constexpr std::uint16_t deleteKey = 0x33;
          constexpr std::uint16_t escape = 0x35;
          if (event.keyCode == escape) ++escapes;
          const bool isTaken =
              event.keyCode == escape || (event.keyCode == deleteKey && sendEditAction("deleteBackward:"));
          return isTaken ? std::nullopt : std::optional(event);
        });
  }
  ~TextCompositionTest() override { run("setxkbmap -option '' us"); }

  static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
  void keys(const std::string& keys) { run("xdotool key --delay 20 " + keys); }

  void showField() {
    field = gtk_text_new();
    show(field);
    watchKeys(window);
    gtk_widget_grab_focus(field);
    ASSERT_TRUE(wait([&] { return gtk_window_is_active(window) != FALSE; }));
  }
  std::string fieldText() const { return gtk_editable_get_text(GTK_EDITABLE(field)); }

  std::unique_ptr<NSPopover> popover;
  GtkWidget* field = nullptr;
  int escapes = 0;
  Connection monitor;
};

TEST_F(TextCompositionTest, BackspaceTakesBackTheDeadKeyAndNothingElse) {
  showField();
  keys("a b dead_acute");
  ASSERT_TRUE(wait([&] { return isComposing(field); })) << fieldText();
  EXPECT_EQ(fieldText(), "ab");
  keys("BackSpace");
  ASSERT_TRUE(wait([&] { return !isComposing(field); }));
  EXPECT_EQ(fieldText(), "ab");
  keys("BackSpace");
  EXPECT_TRUE(wait([&] { return fieldText() == "a"; }))
      << "with nothing composed it deletes: " << fieldText();
}

TEST_F(TextCompositionTest, EscapeGivesUpTheCompositionBeforeItClosesAnything) {
  showField();
  keys("a dead_acute");
  ASSERT_TRUE(wait([&] { return isComposing(field); }));
  keys("Escape");
  ASSERT_TRUE(wait([&] { return !isComposing(field); }));
  EXPECT_EQ(escapes, 0);
  EXPECT_EQ(fieldText(), "a");
  keys("Escape");
  EXPECT_TRUE(wait([&] { return escapes == 1; }));
}

/// Takes each key from the field, as the toolkit's side of a method in another process does.
class SlowMethod {
 public:
  explicit SlowMethod(GtkWidget* field) : field_(field) {
    GtkEventController* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    g_signal_connect(
        keys, "key-pressed",
        G_CALLBACK(+[](GtkEventControllerKey*, guint keyval, guint, GdkModifierType, gpointer self) {
          static_cast<SlowMethod*>(self)->taken.emplace_back(gdk_keyval_name(keyval));
          return TRUE;
        }),
        this);
    gtk_widget_add_controller(field, keys);
  }

  /// What it has composed of the keys that it took.
  void answer(const char* preedit) { g_signal_emit_by_name(field_, "preedit-changed", preedit); }

  std::vector<std::string> taken;

 private:
  GtkWidget* field_;
};

TEST_F(TextCompositionTest, WhatFollowsALetterGoesWhereItWentUntilTheMethodHasAnswered) {
  showField();
  SlowMethod method(field);
  keys("c Escape");
  ASSERT_TRUE(wait([&] { return method.taken.size() == 2; })) << escapes << " Escapes went elsewhere";
  EXPECT_EQ(method.taken, (std::vector<std::string>{"c", "Escape"}));
  method.answer("c");
  EXPECT_TRUE(isComposing(field));
  method.answer("");
  EXPECT_FALSE(isComposing(field));
  keys("Escape");
  EXPECT_TRUE(wait([&] { return escapes == 1; })) << "it has answered: nothing is composed";
}

TEST_F(TextCompositionTest, ALetterThatIsWrittenIsAnswered) {
  showField();
  keys("c Escape");
  EXPECT_TRUE(wait([&] { return escapes == 1; })) << fieldText();
  EXPECT_EQ(fieldText(), "c");
}

TEST_F(TextCompositionTest, ACommandIsNoLetterThatIsAnswered) {
  showField();
  SlowMethod method(field);
  keys("ctrl+c Escape");
  EXPECT_TRUE(wait([&] { return escapes == 1; }));
}

TEST_F(TextCompositionTest, ADeadKeyAndALetterAreComposed) {
  showField();
  keys("dead_acute e");
  EXPECT_TRUE(wait([&] { return fieldText() == "é"; })) << fieldText();
  EXPECT_FALSE(isComposing(field));
}

TEST_F(TextCompositionTest, APagesTextFieldIsLikeOne) {
  auto page = WKWebView::make({}, {});
  page->loadHTMLString("<textarea id=t autofocus></textarea><script>t.focus()</script>", std::nullopt);
  GtkWidget* holder = dynamic_cast<GtkWebView&>(*page).widget();
  show(holder);
  watchKeys(window);
  page->makeFirstResponder();
  ASSERT_TRUE(wait([&] {
    return gtk_window_is_active(window) &&
           evaluateIn(*page, "document.hasFocus() && document.activeElement.id") == "\"t\"";
  }));
  const auto text = [&] { return evaluateIn(*page, "t.value"); };
  GtkWidget* engineView = gtk_widget_get_first_child(holder);
  keys("a b");
  ASSERT_TRUE(wait([&] { return text() == "\"ab\""; })) << text();
  keys("dead_acute");
  ASSERT_TRUE(wait([&] { return isComposing(engineView); }));
  keys("BackSpace");
  ASSERT_TRUE(wait([&] { return !isComposing(engineView); }));
  EXPECT_TRUE(wait([&] { return text() == "\"ab\""; })) << text();
  keys("BackSpace");
  EXPECT_TRUE(wait([&] { return text() == "\"a\""; })) << text();
}

}  // namespace
}  // namespace platform
