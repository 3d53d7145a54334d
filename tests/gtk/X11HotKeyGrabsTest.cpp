#include "Platform/Gtk/GtkInputSource.h"
#include "Platform/Gtk/GtkKeyCodes.h"
#include "Platform/Gtk/X11HotKeyGrabs.h"
#include "gtk/GtkFixture.h"
#include "gtk/HotKeys.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <X11/XKBlib.h>
#include <gdk/x11/gdkx.h>
#include <xcb/xcb.h>

namespace platform {
namespace {

constexpr std::uint32_t ctrlShift = carbon::cmdKey | carbon::shiftKey;
constexpr HotKeyCombination ctrlShiftY{0x10, ctrlShift};
constexpr HotKeyCombination f8{0x64, 0};
constexpr HotKeyCombination f9{0x65, 0};

/// Another program on the same display.
class OtherClient {
 public:
  OtherClient() : connection_(xcb_connect(nullptr, nullptr)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  }
  ~OtherClient() { xcb_disconnect(connection_); }
  OtherClient(const OtherClient&) = delete;
  OtherClient& operator=(const OtherClient&) = delete;

  bool grab(HotKeyCombination combination, std::uint16_t modifiers) {
    auto* error = xcb_request_check(
        connection_, xcb_grab_key_checked(connection_, 1, root_, modifiers,
                                          static_cast<xcb_keycode_t>(*hardwareKeycode(combination.keyCode)),
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool isGranted = error == nullptr;
    std::free(error);
    return isGranted;
  }
  void ungrabAll() {
    xcb_ungrab_key(connection_, XCB_GRAB_ANY, root_, XCB_MOD_MASK_ANY);
    sync();
  }
  /// Counts the presses that came by now.
  int presses() {
    sync();
    int count = 0;
    while (auto* event = xcb_poll_for_event(connection_)) {
      if ((event->response_type & 0x7F) == XCB_KEY_PRESS) ++count;
      std::free(event);
    }
    return count;
  }
  /// Gives all keys of one modifier to another, and takes them from there.
  void moveModifier(std::size_t from, std::size_t to) {
    auto* reply = xcb_get_modifier_mapping_reply(connection_, xcb_get_modifier_mapping(connection_), nullptr);
    const std::size_t width = reply->keycodes_per_modifier;
    auto* keycodes = xcb_get_modifier_mapping_keycodes(reply);
    std::vector<xcb_keycode_t> changed(keycodes, keycodes + 8 * width);
    for (std::size_t i = 0; i < width; ++i) std::swap(changed[from * width + i], changed[to * width + i]);
    auto* answer = xcb_set_modifier_mapping_reply(
        connection_, xcb_set_modifier_mapping(connection_, static_cast<std::uint8_t>(width), changed.data()),
        nullptr);
    EXPECT_EQ(answer->status, XCB_MAPPING_STATUS_SUCCESS);
    std::free(answer);
    std::free(reply);
  }

 private:
  void sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }

  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_NONE;
};

class X11HotKeyGrabsTest : public GtkFixture {
 protected:
  X11HotKeyGrabsTest() { layout("us"); }
  ~X11HotKeyGrabsTest() override {
    for (const auto* key : std::vector(locks_.rbegin(), locks_.rend()))
      run(std::string("xdotool key ") + key);
    layout("us");
  }

  static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
  void layout(const std::string& name) {
    XkbLockGroup(gdk(), XkbUseCoreKbd, 0);
    XSync(gdk(), False);
    run("setxkbmap -option '' " + name);
    turn();
  }
  static Display* gdk() {
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    return gdk_x11_display_get_xdisplay(gdk_display_get_default());
    G_GNUC_END_IGNORE_DEPRECATIONS
  }
  static void repeatFast() {
    XkbSetAutoRepeatRate(gdk(), XkbUseCoreKbd, 200, 20);
    XSync(gdk(), False);
  }
  void toggleLock(const char* key) {
    run(std::string("xdotool key ") + key);
    locks_.push_back(key);
  }
  /// Presses and waits for what comes of it.
  void press(const std::string& keys) {
    const auto before = told.size();
    run("xdotool key " + keys);
    wait([&] { return told.size() >= before + 2; });
  }
  /// Presses what must have no effect, and gives an effect its time: the marker's event comes behind it.
  void pressInVain(const std::string& keys) {
    run("xdotool key " + keys + " key F7");
    ASSERT_TRUE(wait([&] { return !told.empty() && told.back() == "up 98"; }));
    EXPECT_EQ(told, (std::vector<std::string>{"down 98", "up 98"}));
    told.clear();
  }
  std::unique_ptr<X11HotKeyGrabs> makeGrabs() {
    return std::make_unique<X11HotKeyGrabs>(
        [this](HotKeyCombination combination, bool isDown, const Activation& activation) {
          told.push_back((isDown ? "down " : "up ") + std::to_string(combination.keyCode));
          lastTime = activation.time;
        });
  }

  std::vector<std::string> told;
  std::uint32_t lastTime = 0;
  std::unique_ptr<X11HotKeyGrabs> grabs = makeGrabs();

 private:
  std::vector<const char*> locks_;
};

using Told = std::vector<std::string>;
const Told pressedT = {"down 17", "up 17"};

TEST_F(X11HotKeyGrabsTest, TellsOfPressAndReleaseWithTheServersTime) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  press("ctrl+shift+t");
  EXPECT_EQ(told, pressedT);
  EXPECT_NE(lastTime, 0U);
}

TEST_F(X11HotKeyGrabsTest, OtherCombinationsAreLeftToOthers) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  ASSERT_EQ(grabs->grab({0x62, 0}), noErr);
  for (const auto* keys :
       {"ctrl+t", "shift+t", "ctrl+alt+shift+t", "ctrl+shift+super+t", "ctrl+shift+r", "t"})
    pressInVain(keys);
}

TEST_F(X11HotKeyGrabsTest, EachModifierIsItsKey) {
  const std::pair<std::uint32_t, const char*> rows[] = {{carbon::cmdKey, "ctrl+t"},
                                                        {carbon::optionKey, "alt+t"},
                                                        {carbon::controlKey, "super+t"},
                                                        {carbon::shiftKey, "shift+t"}};
  for (const auto& [modifier, keys] : rows) {
    told.clear();
    ASSERT_EQ(grabs->grab({0x11, modifier}), noErr) << keys;
    press(keys);
    EXPECT_EQ(told, pressedT) << keys;
    grabs->ungrab({0x11, modifier});
  }
}

TEST_F(X11HotKeyGrabsTest, LocksMakeNoDifference) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  toggleLock("Num_Lock");
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT) << "with Num Lock";
  told.clear();
  toggleLock("Caps_Lock");
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT) << "with both";
  told.clear();
  toggleLock("Num_Lock");
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT) << "with Caps Lock";
}

TEST_F(X11HotKeyGrabsTest, NumLockIsFoundWhereverItIs) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  OtherClient client;
  constexpr std::size_t mod2 = 4;
  constexpr std::size_t mod3 = 5;
  client.moveModifier(mod2, mod3);
  turn();
  toggleLock("Num_Lock");
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT);
  run("xdotool key Num_Lock");
  client.moveModifier(mod2, mod3);
  turn();
  run("xdotool key Num_Lock");
  told.clear();
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT);
}

TEST_F(X11HotKeyGrabsTest, AKeyIsItsLetterInEveryLayout) {
  ASSERT_EQ(grabs->grab(ctrlShiftY), noErr);
  press("ctrl+shift+y");
  layout("de");
  press("ctrl+shift+y");
  EXPECT_EQ(told, (Told{"down 16", "up 16", "down 16", "up 16"})) << "a German keyboard has it elsewhere";
}

TEST_F(X11HotKeyGrabsTest, ASecondLayoutMakesNoDifference) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  layout("us,ru");
  XkbLockGroup(gdk(), XkbUseCoreKbd, 1);
  XSync(gdk(), False);
  press("ctrl+shift+28");
  EXPECT_EQ(told, pressedT);
}

TEST_F(X11HotKeyGrabsTest, AKeyThatIsHeldDownIsPressedOnce) {
  OtherClient witness;
  repeatFast();
  ASSERT_TRUE(witness.grab(f9, 0));
  run("xdotool keydown F9 sleep 0.6 keyup F9");
  ASSERT_GT(witness.presses(), 2) << "this display repeats no keys, so that the test shows nothing";
  ASSERT_EQ(grabs->grab(f8), noErr);
  run("xdotool keydown F8 sleep 0.6 keyup F8");
  ASSERT_TRUE(wait([&] { return !told.empty() && told.back() == "up 100"; }));
  turn();
  EXPECT_EQ(told, (Told{"down 100", "up 100"}));
  press("F8");
  EXPECT_EQ(told, (Told{"down 100", "up 100", "down 100", "up 100"}));
}

TEST_F(X11HotKeyGrabsTest, AHeldKeyThatIsReadWhileItRepeatsIsPressedOnce) {
  repeatFast();
  ASSERT_EQ(grabs->grab(f8), noErr);
  run("(xdotool keydown F8 sleep 0.8 keyup F8) &");
  ASSERT_TRUE(wait([&] { return told.size() >= 2; }));
  turn();
  EXPECT_EQ(told, (Told{"down 100", "up 100"}));
}

TEST_F(X11HotKeyGrabsTest, ModifiersThatAreReleasedFirstDontHideTheRelease) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  run("xdotool keydown ctrl keydown shift keydown t keyup ctrl keyup shift keyup t");
  ASSERT_TRUE(wait([&] { return told.size() >= 2; }));
  EXPECT_EQ(told, pressedT);
}

TEST_F(X11HotKeyGrabsTest, WhatAnotherHoldsIsRefusedAndNothingOfItIsKept) {
  OtherClient other;
  // Only with Num Lock: the three other combinations are free.
  ASSERT_TRUE(other.grab(ctrlShiftT, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_2));
  EXPECT_TRUE(grabs->isHeldByAnother(ctrlShiftT));
  EXPECT_EQ(grabs->grab(ctrlShiftT), eventHotKeyExistsErr);
  OtherClient third;
  EXPECT_TRUE(third.grab(ctrlShiftT, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT));
  EXPECT_TRUE(third.grab(ctrlShiftT, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK));
  third.ungrabAll();
  other.ungrabAll();
  EXPECT_FALSE(grabs->isHeldByAnother(ctrlShiftT));
  EXPECT_EQ(grabs->grab(ctrlShiftT), noErr);
  press("ctrl+shift+t");
  EXPECT_EQ(told, pressedT);
}

TEST_F(X11HotKeyGrabsTest, AskingTakesNothing) {
  EXPECT_FALSE(grabs->isHeldByAnother(ctrlShiftT));
  OtherClient other;
  EXPECT_TRUE(other.grab(ctrlShiftT, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT));
}

TEST_F(X11HotKeyGrabsTest, OnesOwnIsNotHeldByAnother) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  EXPECT_FALSE(grabs->isHeldByAnother(ctrlShiftT));
  press("ctrl+shift+t");
  EXPECT_EQ(told, pressedT) << "the question took it away";
}

TEST_F(X11HotKeyGrabsTest, WhatIsLetGoIsFree) {
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  ASSERT_EQ(grabs->grab({0x62, 0}), noErr);
  grabs->ungrab(ctrlShiftT);
  pressInVain("ctrl+shift+t");
  auto second = makeGrabs();
  EXPECT_EQ(second->grab(ctrlShiftT), noErr);
  EXPECT_TRUE(grabs->isHeldByAnother(ctrlShiftT));
  second.reset();
  // The display hears of an end when it comes to it, and answers others meanwhile.
  EXPECT_TRUE(wait([&] { return !grabs->isHeldByAnother(ctrlShiftT); }))
      << "an end of the program frees its keys";
}

TEST_F(X11HotKeyGrabsTest, AKeyThatNoKeyboardHasIsRefused) {
  EXPECT_EQ(grabs->grab({0x3F, carbon::cmdKey}), eventHotKeyInvalidErr);
  EXPECT_EQ(grabs->grab({999, carbon::cmdKey}), eventHotKeyInvalidErr);
  EXPECT_FALSE(grabs->isHeldByAnother({999, 0}));
}

TEST_F(X11HotKeyGrabsTest, AnActionMayEndItAll) {
  auto own = std::make_unique<X11HotKeyGrabs>([&](HotKeyCombination, bool, const Activation&) {
    told.emplace_back("ended");
    grabs.reset();
  });
  grabs.swap(own);
  own.reset();
  ASSERT_EQ(grabs->grab(ctrlShiftT), noErr);
  run("xdotool key ctrl+shift+t");
  ASSERT_TRUE(wait([&] { return !told.empty(); }));
  turn();
  EXPECT_EQ(told, Told{"ended"});
}

class GtkInputSourceTest : public X11HotKeyGrabsTest {
 protected:
  static std::string character(std::uint16_t keyCode) {
    const auto source = GtkInputSource::current();
    return source ? source->UCKeyTranslate(keyCode).value() : "no source";
  }
  bool comesToBe(std::uint16_t keyCode, const std::string& text) {
    return wait([&] { return character(keyCode) == text; });
  }
};

TEST_F(GtkInputSourceTest, TellsWhatAKeyGivesInTheLayoutInUse) {
  EXPECT_TRUE(comesToBe(0x10, "y"));
  EXPECT_EQ(character(0x2B), ",");
  EXPECT_EQ(character(0x52), "0") << "the keypad's digit, without Num Lock";
  EXPECT_EQ(character(0x43), "*");
  EXPECT_EQ(character(0x60), "") << "F5 gives no character";
  EXPECT_EQ(character(0x3F), "") << "nor does a key that isn't there";
  layout("de");
  EXPECT_TRUE(comesToBe(0x29, "ö"));
  EXPECT_EQ(character(0x10), "y") << "the letter's key, wherever it is";
}

TEST_F(GtkInputSourceTest, AnotherScriptsKeysAreNamedByTheLayoutBesideIt) {
  layout("ru,de");
  EXPECT_TRUE(comesToBe(0x29, "ö"));
}

TEST_F(GtkInputSourceTest, TheActiveOneOfTwoCounts) {
  layout("us,de");
  EXPECT_TRUE(comesToBe(0x29, ";"));
  XkbLockGroup(gdk(), XkbUseCoreKbd, 1);
  XSync(gdk(), False);
  EXPECT_TRUE(comesToBe(0x29, "ö"));
}

TEST_F(GtkInputSourceTest, WithoutOneThatWritesASCIIThereIsNone) {
  layout("ru");
  EXPECT_TRUE(wait([] { return GtkInputSource::current() == nullptr; }));
}

}  // namespace
}  // namespace platform
