#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/GlobalShortcutsEditUIView.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/RecorderMessages.h"
#include "Onboarding/AboutUIView.h"
#include "Onboarding/EasterEggEnabledUIView.h"
#include "Onboarding/EasterEggFeatureLabelUIView.h"
#include "Onboarding/EasterEggUrlEditingUIView.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "SideBar/CheckboxUIView.h"
#include "gtk/GtkFixture.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velkin {
namespace {

using namespace platform;
using KeyboardShortcuts::Name;

/// The pages that change settings, as real widgets with real keys.
class SettingsPagesTest : public GtkFixture {
 protected:
  ~SettingsPagesTest() override {
    run("xdotool keyup space");
    hosting.reset();
    turn();
    KeyboardShortcuts::reset(Name::popUpShortcut(), Name::searchBarShortcut());
    KeyboardShortcuts::shutDown();
    UserDefaultsHelper().set(600.0, UserDefault::webViewWidth);
    AdditionalViews().set(false);
  }

  static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
  template <class V>
  void showView(const V& view, int width = 620, int height = 560) {
    hosting = std::make_unique<GtkHostingView>(View(view));
    show(hosting->widget(), width, height);
    watchKeys(window);
    ASSERT_TRUE(wait([&] { return gtk_window_is_active(window) != FALSE; }));
    turn();
  }
  std::vector<GtkWidget*> widgets(GType type) const { return all(hosting->widget(), type); }
  bool showsText(std::string_view text) const {
    const auto texts = labels(hosting->widget());
    return std::find(texts.begin(), texts.end(), text) != texts.end();
  }
  GtkWidget* focus() const { return gtk_window_get_focus(window); }
  /// The button that shows this text.
  GtkWidget* button(std::string_view text) const {
    for (auto* each : widgets(GTK_TYPE_BUTTON)) {
      const auto texts = labels(each);
      if (std::find(texts.begin(), texts.end(), text) != texts.end()) return each;
    }
    return nullptr;
  }
  void record(std::string_view shown) {
    auto* recorder = button(shown);
    ASSERT_NE(recorder, nullptr) << shown;
    gtk_widget_grab_focus(recorder);
    g_signal_emit_by_name(recorder, "clicked");
    ASSERT_TRUE(wait([&] { return KeyboardShortcuts::isPaused(); }));
    turn();
  }
  /// As the program's router does it.
  Connection keepsReleases = NSEvent::addLocalMonitorForEvents(NSEvent::mask(NSEvent::EventType::keyUp),
                                                               [](const NSEvent&) { return std::nullopt; });
  std::unique_ptr<GtkHostingView> hosting;
};

TEST_F(SettingsPagesTest, OpeningAPanelMovesTheKeyboardOnceAndStaysThere) {
  UserDefaultsHelper().set("https://chat.example.org/", UserDefault::chatUrl);
  AdditionalViews().set(true);
  const std::vector<View> pages = {AboutUIView{}, EasterEggUrlEditingUIView{}, GlobalShortcutsEditUIView{}};
  for (const auto& page : pages) {
    showView(page);
    auto* const first = focus();
    ASSERT_NE(first, nullptr);
    int moves = 0;
    g_signal_connect(
        window, "notify::focus-widget",
        G_CALLBACK(+[](GtkWindow*, GParamSpec*, gpointer count) { ++*static_cast<int*>(count); }), &moves);
    // A view that wants the keyboard for itself takes it in one of the turns after the first picture.
    int frames = 0;
    gtk_widget_add_tick_callback(
        hosting->widget(),
        [](GtkWidget*, GdkFrameClock*, gpointer count) -> gboolean {
          return ++*static_cast<int*>(count) < 5 ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
        },
        &frames, nullptr);
    ASSERT_TRUE(wait([&] { return frames >= 5; }));
    EXPECT_EQ(moves, 0);
    EXPECT_EQ(focus(), first);
    EXPECT_FALSE(KeyboardShortcuts::isPaused()) << "nothing records by itself";
    g_signal_handlers_disconnect_by_data(window, &moves);
    hosting.reset();
    gtk_window_destroy(std::exchange(window, nullptr));
    turn();
  }
  UserDefaultsHelper().set("", UserDefault::chatUrl);
}

TEST_F(SettingsPagesTest, TheRecorderTakesAnyKeyWithModifiersFromTheKeyboard) {
  showView(GlobalShortcutsEditUIView{});
  std::string shown = "⇧⌘T";
  const std::vector<std::pair<const char*, const char*>> keys = {
      {"ctrl+alt+g", "⌥⌘G"}, {"ctrl+1", "⌘1"},           {"shift+F7", "⇧F7"},
      {"F9", "F9"},          {"super+k", "⌃K"},          {"ctrl+shift+comma", "⇧⌘,"},
      {"alt+Page_Up", "⌥⇞"}, {"ctrl+super+Left", "⌃⌘←"}, {"ctrl+space", "⌘⎵"},
      {"ctrl+Escape", "⌘⎋"}, {"ctrl+Tab", "⌘⇥"}};
  for (const auto& [pressed, glyphs] : keys) {
    record(shown);
    run(std::string("xdotool key --delay 20 ") + pressed);
    EXPECT_TRUE(wait([&] { return !KeyboardShortcuts::isPaused(); })) << pressed;
    const auto stored = Name::popUpShortcut().shortcut();
    ASSERT_TRUE(stored) << pressed;
    EXPECT_EQ(stored->description(), glyphs) << pressed;
    turn();
    shown = stored->description();
    EXPECT_TRUE(showsText(shown)) << pressed;
  }
}

TEST_F(SettingsPagesTest, ARecorderThatLosesItsWindowLeavesNothingPaused) {
  for (const bool isHidden : {true, false}) {
    showView(GlobalShortcutsEditUIView{});
    record("⇧⌘T");
    EXPECT_TRUE(showsText(KeyboardShortcuts::messages::press_shortcut));
    if (isHidden) {
      gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
    } else {
      hosting.reset();
    }
    EXPECT_TRUE(wait([] { return !KeyboardShortcuts::isPaused(); })) << (isHidden ? "hidden" : "gone");
    EXPECT_TRUE(KeyboardShortcuts::isEnabled());
    hosting.reset();
    gtk_window_destroy(std::exchange(window, nullptr));
    turn();
  }
}

TEST_F(SettingsPagesTest, RowsKeepTheKeyboardTheirTextAndTheCursorOverARedraw) {
  AdditionalViews().set(true);
  showView(EasterEggEnabledUIView{});
  auto entries = widgets(GTK_TYPE_ENTRY);
  ASSERT_EQ(entries.size(), 7U);
  auto* const bard = entries[1];
  gtk_widget_grab_focus(bard);
  run("xdotool type --delay 10 https://bard.example.org/");
  ASSERT_TRUE(wait([&] {
    return std::string_view(gtk_editable_get_text(GTK_EDITABLE(bard))) == "https://bard.example.org/";
  }));
  gtk_editable_set_position(GTK_EDITABLE(bard), 8);
  const auto isAsItWas = [&] {
    return gtk_widget_is_ancestor(focus(), bard) &&
           std::string_view(gtk_editable_get_text(GTK_EDITABLE(bard))) == "https://bard.example.org/" &&
           gtk_editable_get_position(GTK_EDITABLE(bard)) == 8;
  };
  WindowAppearance::didChange();
  turn();
  EXPECT_TRUE(isAsItWas());
  // In a narrow window the title stands above the field.
  const auto rowHeight = [&] {
    return boundsIn(widgets(GTK_TYPE_ENTRY)[1], hosting->widget()).y -
           boundsIn(widgets(GTK_TYPE_ENTRY)[0], hosting->widget()).y;
  };
  const auto wide = rowHeight();
  UserDefaultsHelper().set(340.0, UserDefault::webViewWidth);
  WindowAppearance::didChange();
  ASSERT_TRUE(wait([&] { return rowHeight() > wide; }));
  EXPECT_EQ(widgets(GTK_TYPE_ENTRY)[1], bard);
  EXPECT_TRUE(isAsItWas());
  // The list gets shorter and longer again: the first row stays.
  gtk_widget_grab_focus(entries[0]);
  AdditionalViews().set(false);
  turn();
  EXPECT_EQ(widgets(GTK_TYPE_ENTRY), std::vector{entries[0]});
  EXPECT_TRUE(gtk_widget_is_ancestor(focus(), entries[0]));
}

TEST_F(SettingsPagesTest, TheKeyIsLegibleWhileItsButtonIsHeldDownByTheKeyboard) {
  const EasterEggFeatureLabelUIView row{.item = EasterEggItem::search};
  row.inputText.set("sk-secret");
  showView(row);
  auto* const text = widgets(GTK_TYPE_TEXT).front();
  auto* const eye = [this]() -> GtkWidget* {
    for (auto* each : widgets(GTK_TYPE_BUTTON)) {
      const char* help = gtk_widget_get_tooltip_text(each);
      if (help != nullptr && std::string_view(help) == "Hold down to show the key") return each;
    }
    return nullptr;
  }();
  ASSERT_NE(eye, nullptr);
  const auto isLegible = [&] { return gtk_text_get_visibility(GTK_TEXT(text)) != FALSE; };
  EXPECT_FALSE(isLegible());
  gtk_widget_grab_focus(eye);
  run("xdotool keydown space");
  EXPECT_TRUE(wait(isLegible));
  run("xdotool keyup space");
  EXPECT_TRUE(wait([&] { return !isLegible(); }));
  // Who goes elsewhere with the key held doesn't leave it on show.
  run("xdotool keydown space");
  EXPECT_TRUE(wait(isLegible));
  gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
  EXPECT_TRUE(wait([&] { return !isLegible(); }));
}

TEST_F(SettingsPagesTest, ARowWithABoxIsACheckBoxForAssistiveTools) {
  const State<bool> isChecked{false};
  int turns = 0;
  showView(CheckboxUIView{.title = "FullScreen: ",
                          .tooltip = "Check to open group as FullScreen.",
                          .isChecked = isChecked.binding(),
                          .isHovering = Binding<bool>::constant(false),
                          .action = [&] { ++turns; }});
  const auto boxes = widgets(GTK_TYPE_CHECK_BUTTON);
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(boxes[0])), GTK_ACCESSIBLE_ROLE_CHECKBOX);
  gtk_widget_grab_focus(boxes[0]);
  run("xdotool key space");
  EXPECT_TRUE(wait([&] { return isChecked.get(); }));
  EXPECT_EQ(turns, 1);
  turn();
  EXPECT_TRUE(gtk_check_button_get_active(GTK_CHECK_BUTTON(boxes[0])));
}

}  // namespace
}  // namespace velkin
