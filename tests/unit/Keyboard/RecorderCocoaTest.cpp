#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/Recorder.h"
#include "Keyboard/RecorderCocoa.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "unit/Repetitions.h"

#include <memory>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace velkin::KeyboardShortcuts {
namespace {

using platform::NSEvent;

constexpr auto commandShift = NSEvent::commandFlag | NSEvent::shiftFlag;

class RecorderCocoaTest : public testing::Test {
 protected:
  RecorderCocoaTest() {
    recorder->place->find = [] {
      return platform::ViewPlace::InWindow{7, {{100, 100}, {130, 30}}};
    };
    recorder->viewDidMoveToWindow();
    desktop.queue.drain();
  }
  ~RecorderCocoaTest() override {
    recorder.reset();
    shutDown();
  }

  static NSEvent press(Key key, std::uint32_t modifiers = 0, std::string characters = "x") {
    return {.type = NSEvent::EventType::keyDown,
            .keyCode = static_cast<std::uint16_t>(key.rawValue),
            .modifierFlags = modifiers,
            .charactersIgnoringModifiers = std::move(characters)};
  }
  /// True if the event went on.
  bool send(const NSEvent& event) { return platform::NSApp().filterByMonitors(event).has_value(); }
  bool click(double x, double y, int window = 7, NSEvent::EventType type = NSEvent::EventType::leftMouseUp) {
    return send({.type = type, .locationInWindow = {x, y}, .windowNumber = window});
  }

  platform::HeadlessPlatform desktop;
  Name name{"popUpShortcut", Shortcut(Key::t, commandShift)};
  std::vector<std::optional<Shortcut>> saved;
  std::shared_ptr<RecorderCocoa> recorder = std::make_shared<RecorderCocoa>(
      name, [this](const std::optional<Shortcut>& shortcut) { saved.push_back(shortcut); });
};

TEST_F(RecorderCocoaTest, ShowsWhatIsStored) {
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
  EXPECT_TRUE(recorder->showsCancelButton());
  EXPECT_EQ(recorder->placeholderString(), "Record Shortcut");
  EXPECT_FALSE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, CantTakeTheKeyboardInTheTurnInWhichItsWindowOpens) {
  const auto fresh = std::make_shared<RecorderCocoa>(name);
  fresh->viewDidMoveToWindow();
  EXPECT_FALSE(fresh->canBecomeKeyView());
  fresh->focus();
  EXPECT_FALSE(fresh->isRecording());
  desktop.queue.drain();
  EXPECT_TRUE(fresh->canBecomeKeyView());
  fresh->focus();
  EXPECT_TRUE(fresh->isRecording());
}

TEST_F(RecorderCocoaTest, RecordingPausesTheGlobalShortcutsAndLetsTheirKeysGo) {
  int pressed = 0;
  onKeyDown(name, [&] { ++pressed; });
  recorder->focus();
  EXPECT_EQ(recorder->placeholderString(), "Press Shortcut");
  EXPECT_TRUE(isPaused());
  EXPECT_EQ(desktop.keyboard.press(Shortcut(Key::t, commandShift).combination()), 0)
      << "a key that is grabbed couldn't be recorded";
  recorder->blur();
  EXPECT_FALSE(isPaused());
  EXPECT_EQ(desktop.keyboard.press(Shortcut(Key::t, commandShift).combination()), 1);
  EXPECT_EQ(pressed, 1);
}

TEST_F(RecorderCocoaTest, ACombinationIsStoredShownAndEndsIt) {
  recorder->focus();
  EXPECT_FALSE(send(press(Key::g, NSEvent::commandFlag | NSEvent::optionFlag)));
  EXPECT_EQ(recorder->stringValue(), "⌥⌘G");
  EXPECT_EQ(getShortcut(name), Shortcut(Key::g, NSEvent::commandFlag | NSEvent::optionFlag));
  EXPECT_EQ(saved.size(), 1U);
  EXPECT_FALSE(recorder->isRecording());
  EXPECT_FALSE(isPaused());
  EXPECT_TRUE(desktop.keyboard.isRegistered(getShortcut(name)->combination()));
  EXPECT_FALSE(desktop.keyboard.isRegistered(Shortcut(Key::t, commandShift).combination()))
      << "the old one is free";
}

TEST_F(RecorderCocoaTest, TheSameCombinationCanBeRecordedAgain) {
  recorder->focus();
  send(press(Key::t, commandShift));
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
  EXPECT_TRUE(desktop.keyboard.isRegistered(Shortcut(Key::t, commandShift).combination()));
}

TEST_F(RecorderCocoaTest, AClickInTheMarginStaysAndOneBeyondItEndsAndGoesOn) {
  recorder->focus();
  EXPECT_FALSE(click(97, 97));
  EXPECT_FALSE(click(233, 133));
  EXPECT_TRUE(recorder->isRecording());
  EXPECT_TRUE(click(96, 97));
  EXPECT_FALSE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, AClickInAnotherWindowOrWithTheOtherButtonEndsItToo) {
  recorder->focus();
  EXPECT_TRUE(click(110, 110, 8));
  EXPECT_FALSE(recorder->isRecording());
  recorder->focus();
  EXPECT_TRUE(click(10, 10, 7, NSEvent::EventType::rightMouseUp));
  EXPECT_FALSE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, TabLeavesAndGoesOn) {
  recorder->focus();
  EXPECT_TRUE(send(press(Key::tab)));
  EXPECT_FALSE(recorder->isRecording());
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
}

TEST_F(RecorderCocoaTest, ShiftTabBeeps) {
  recorder->focus();
  EXPECT_FALSE(send(press(Key::tab, NSEvent::shiftFlag)));
  EXPECT_EQ(desktop.workspace.beeps, 1);
  EXPECT_TRUE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, EscapeKeepsTheOldOneAndGoesNoFurther) {
  recorder->focus();
  EXPECT_FALSE(send(press(Key::escape)));
  EXPECT_FALSE(recorder->isRecording());
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
  EXPECT_TRUE(saved.empty());
}

TEST_F(RecorderCocoaTest, DeleteClearsAndGoesOnRecording) {
  for (const auto key : {Key::deleteKey, Key::deleteForward}) {
    setShortcut(Shortcut(Key::t, commandShift), name);
    saved.clear();
    recorder->focus();
    EXPECT_FALSE(send(press(key)));
    EXPECT_EQ(recorder->stringValue(), "");
    EXPECT_FALSE(recorder->showsCancelButton());
    EXPECT_TRUE(recorder->isRecording());
    EXPECT_EQ(desktop.userDefaults.valueForKey("KeyboardShortcuts_popUpShortcut"),
              platform::PropertyListValue(false));
    EXPECT_EQ(saved.size(), 1U);
    EXPECT_FALSE(send(press(key))) << "there is nothing to clear any more";
    EXPECT_EQ(saved.size(), 1U);
  }
}

TEST_F(RecorderCocoaTest, LettersAndDigitsWithoutModifiersBeep) {
  recorder->focus();
  EXPECT_FALSE(send(press(Key::a)));
  EXPECT_FALSE(send(press(Key::a, NSEvent::shiftFlag)));
  EXPECT_FALSE(send(press(Key::one)));
  EXPECT_EQ(desktop.workspace.beeps, 3);
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
  EXPECT_TRUE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, LocksAreNoModifiers) {
  recorder->focus();
  send(press(Key::a, NSEvent::capsLockFlag | NSEvent::numericPadFlag));
  EXPECT_EQ(desktop.workspace.beeps, 1);
}

TEST_F(RecorderCocoaTest, AKeyThatNoCodeStandsForBeeps) {
  recorder->focus();
  send(press(Key{NSEvent::unknownKeyCode}, NSEvent::commandFlag));
  EXPECT_EQ(desktop.workspace.beeps, 1);
  EXPECT_TRUE(saved.empty());
}

TEST_F(RecorderCocoaTest, FunctionKeysAreTakenAloneAndWithShift) {
  recorder->focus();
  send(press(Key::f5, 0, "\uF708"));
  EXPECT_EQ(recorder->stringValue(), "F5");
  recorder->focus();
  send(press(Key::f5, NSEvent::shiftFlag, ""));
  EXPECT_EQ(recorder->stringValue(), "⇧F5");
  EXPECT_EQ(desktop.workspace.beeps, 0);
}

TEST_F(RecorderCocoaTest, F12AloneIsTakenWhateverTheDesktopSays) {
  desktop.keyboard.symbolicHotKeys = std::vector<platform::PropertyListValue::Dictionary>{
      {{"kHISymbolicHotKeyEnabled", true},
       {"kHISymbolicHotKeyCode", std::int64_t{Key::f12.rawValue}},
       {"kHISymbolicHotKeyModifiers", std::int64_t{0}}}};
  recorder->focus();
  send(press(Key::f12, 0, ""));
  EXPECT_EQ(recorder->stringValue(), "F12");
}

TEST_F(RecorderCocoaTest, WhatAnotherProgramHoldsIsRefusedAndRecordingGoesOnAfterTheAlert) {
  const Shortcut taken(Key::k, commandShift);
  desktop.keyboard.heldByOthers.insert(taken.combination());
  recorder->focus();
  EXPECT_FALSE(send(press(Key::k, commandShift)));
  EXPECT_FALSE(recorder->isRecording());
  ASSERT_EQ(desktop.openDialogs.alerts.size(), 1U);
  EXPECT_EQ(desktop.openDialogs.alerts.back().asked.messageText, "This shortcut is used by the system.");
  EXPECT_EQ(desktop.openDialogs.alerts.back().asked.informativeText,
            "You can change the system's shortcuts in its settings.");
  EXPECT_EQ(getShortcut(name), Shortcut(Key::t, commandShift));
  EXPECT_TRUE(desktop.openDialogs.press("OK"));
  desktop.queue.drain();
  EXPECT_TRUE(recorder->isRecording());
}

TEST_F(RecorderCocoaTest, WhatTheMainMenuHasIsRefusedByItsName) {
  auto menu = std::make_shared<platform::NSMenu>();
  menu->addItem(std::make_shared<platform::NSMenuItem>("Open…", [] {}, "g"));
  platform::NSApp().mainMenu = menu;
  recorder->focus();
  send(press(Key::g, NSEvent::commandFlag));
  ASSERT_EQ(desktop.openDialogs.alerts.size(), 1U);
  EXPECT_EQ(desktop.openDialogs.alerts.back().asked.messageText,
            "This shortcut is used by the menu item “Open…”.");
  EXPECT_EQ(getShortcut(name), Shortcut(Key::t, commandShift));
  platform::NSApp().mainMenu.reset();
}

TEST_F(RecorderCocoaTest, FollowsChangesOfItsOwnNameOnly) {
  const Name other("searchBarShortcut", Shortcut(Key::r, commandShift));
  setShortcut(Shortcut(Key::y, commandShift), other);
  EXPECT_EQ(recorder->stringValue(), "⇧⌘T");
  setShortcut(Shortcut(Key::y, commandShift), name);
  EXPECT_EQ(recorder->stringValue(), "⇧⌘Y");
  recorder->setShortcutName(other);
  setShortcut(std::nullopt, other);
  EXPECT_EQ(recorder->stringValue(), "");
}

TEST_F(RecorderCocoaTest, OneRecordsAtATime) {
  const auto other = std::make_shared<RecorderCocoa>(Name("searchBarShortcut", Shortcut(Key::r, commandShift)));
  other->viewDidMoveToWindow();
  desktop.queue.drain();
  recorder->focus();
  other->focus();
  EXPECT_FALSE(recorder->isRecording());
  EXPECT_TRUE(other->isRecording());
  EXPECT_TRUE(isPaused());
  RecorderCocoa::stopRecording();
  EXPECT_FALSE(isPaused());
}

TEST_F(RecorderCocoaTest, NothingStaysPausedWhenItGoesWhileItRecords) {
  recorder->focus();
  recorder.reset();
  EXPECT_FALSE(isPaused());
  EXPECT_TRUE(isEnabled());
  EXPECT_TRUE(send(press(Key::g, NSEvent::commandFlag)));
  recorder = std::make_shared<RecorderCocoa>(name);
}

TEST_F(RecorderCocoaTest, TheNewestMonitorSeesAKeyFirst) {
  int seen = 0;
  const auto router = NSEvent::addLocalMonitorForEvents(
      NSEvent::mask(NSEvent::EventType::keyDown), [&](const NSEvent& event) -> std::optional<NSEvent> {
        ++seen;
        return event;
      });
  recorder->focus();
  send(press(Key::q, NSEvent::commandFlag));
  EXPECT_EQ(seen, 0);
  send(press(Key::q, NSEvent::commandFlag));
  EXPECT_EQ(seen, 1);
}

/// What the control is to do, as plainly as it can be said.
struct Model {
  bool isRecording = false;
  bool isStored = true;

  void focus() { isRecording = true; }
  void leave() { isRecording = false; }
  void clear() {
    if (isRecording) isStored = false;
  }
  void accept() {
    if (isRecording) isStored = true;
    isRecording = false;
  }
};

TEST_F(RecorderCocoaTest, AgreesWithTheModelOnARandomWalk) {
  std::mt19937 random(20);
  Model model;
  for (int step = 0; step < 2000; ++step) {
    switch (random() % 8) {
      case 0:
        recorder->focus();
        model.focus();
        break;
      case 1:
        recorder->controlTextDidEndEditing();
        model.leave();
        break;
      case 2:
        send(press(Key::escape));
        model.leave();
        break;
      case 3:
        send(press(Key::tab));
        model.leave();
        break;
      case 4:
        send(press(Key::deleteKey));
        model.clear();
        break;
      case 5:
        send(press(Key::a));
        break;
      case 6:
        send(press(Key::b, NSEvent::controlFlag));
        model.accept();
        break;
      case 7:
        click(0, 0);
        model.leave();
        break;
    }
    ASSERT_EQ(recorder->isRecording(), model.isRecording) << step;
    ASSERT_EQ(isPaused(), model.isRecording) << step;
    ASSERT_EQ(isEnabled(), !model.isRecording) << step;
    ASSERT_EQ(desktop.app.takesReservedKeys, model.isRecording) << step;
    ASSERT_EQ(getShortcut(name).has_value(), model.isStored) << step;
    ASSERT_EQ(recorder->showsCancelButton(), model.isStored) << step;
  }
}

class RecorderTest : public testing::Test {
 protected:
  ~RecorderTest() override { shutDown(); }
  platform::HeadlessPlatform desktop;
  Name name{"popUpShortcut", Shortcut(Key::t, commandShift)};
};

TEST_F(RecorderTest, APressStartsRecordingAndLosingTheKeyboardEndsIt) {
  platform::NSHostingController host(Recorder("PopUp:", name));
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  auto* field = tree.control("⇧⌘T");
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->element().modifiers.label, "PopUp: Ctrl+Shift+T, change");
  field->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("Press Shortcut"));
  EXPECT_TRUE(isPaused());
  tree.control("Press Shortcut")->element().modifiers.focused->set(false);
  desktop.queue.drain();
  EXPECT_FALSE(isPaused());
  EXPECT_TRUE(tree.showsText("⇧⌘T"));
}

TEST_F(RecorderTest, TheCancelButtonClearsAndWaitsForTheNext) {
  platform::NSHostingController host(Recorder("PopUp:", name));
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  tree.control("Clear Shortcut")->press();
  desktop.queue.drain();
  EXPECT_FALSE(name.shortcut());
  EXPECT_TRUE(tree.showsText("Press Shortcut"));
  EXPECT_FALSE(tree.control("Clear Shortcut")->isEnabled());
}

TEST_F(RecorderTest, SaysSoBesideAShortcutThatAnotherProgramHas) {
  shutDown();
  desktop.keyboard.heldByOthers.insert(Shortcut(Key::t, commandShift).combination());
  onKeyDown(name, [] {});
  platform::NSHostingController host(Recorder("PopUp:", name));
  EXPECT_TRUE(platform::headlessTree(host).showsText("Another program uses Ctrl+Shift+T."));
}

TEST_F(RecorderTest, ShowsWhatTheDesktopGaveWhereItHandsOutTheKeys) {
  desktop.keyboard.grantedTriggers.emplace();
  (*desktop.keyboard.grantedTriggers)["popUpShortcut"] = "Press Meta+K";
  platform::NSHostingController host(Recorder("PopUp:", name));
  const auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("Press Meta+K"));
  EXPECT_TRUE(tree.all<platform::ButtonContent>().empty());
}

}  // namespace
}  // namespace velkin::KeyboardShortcuts
