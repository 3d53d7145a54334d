#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin::CarbonKeyboardShortcuts {
namespace {

using platform::CarbonEvent;
using platform::EventHotKeyID;
using platform::kEventHotKeyPressed;
using platform::kEventHotKeyReleased;
using platform::kEventRawKeyDown;
using platform::kEventRawKeyUp;
using Strings = std::vector<std::string>;

class CarbonKeyboardShortcutsTest : public testing::Test {
 protected:
  ~CarbonKeyboardShortcutsTest() override { KeyboardShortcuts::shutDown(); }

  void add(const Shortcut& shortcut) {
    registerShortcut(
        shortcut, [this](const Shortcut& s) { told.push_back("down " + std::to_string(s.carbonKeyCode())); },
        [this](const Shortcut& s) { told.push_back("up " + std::to_string(s.carbonKeyCode())); });
  }
  /// The ids that are registered at the moment, in the order of registration.
  std::vector<std::uint32_t> ids() const {
    std::vector<std::uint32_t> found;
    for (const auto& [ref, registration] : keyboard().registrations) found.push_back(registration.id.id);
    return found;
  }
  const platform::HeadlessEventTarget& keyboard() const { return desktop.keyboard; }
  platform::OSStatus send(CarbonEvent event) { return desktop.keyboard.sendEvent(event); }

  platform::HeadlessPlatform desktop;
  Strings told;
  const Shortcut t{17, 768};
  const Shortcut r{15, 768};
};

TEST_F(CarbonKeyboardShortcutsTest, TheSignatureIsItsFourCharacters) {
  EXPECT_EQ(hotKeySignature, 0x514B484BU);
  EXPECT_EQ(platform::kEventClassKeyboard, 0x6B657962U);
}

TEST_F(CarbonKeyboardShortcutsTest, NumbersBeginAtOneAndARefusedRegistrationTakesOneToo) {
  add(t);
  desktop.keyboard.heldByOthers = {Shortcut(1, 256).combination()};
  add(Shortcut(1, 256));
  add(r);
  EXPECT_EQ(ids(), (std::vector<std::uint32_t>{1, 3})) << "in the order of ids, not of references";
  for (const auto& [ref, registration] : keyboard().registrations)
    EXPECT_EQ(registration.id.signature, hotKeySignature);
}

TEST_F(CarbonKeyboardShortcutsTest, APressAndAReleaseRunTheirActions) {
  add(t);
  add(r);
  desktop.keyboard.press(r.combination());
  desktop.keyboard.release(r.combination());
  desktop.keyboard.press(t.combination());
  EXPECT_EQ(told, (Strings{"down 15", "up 15", "down 17"}));
}

TEST_F(CarbonKeyboardShortcutsTest, EventsAreTakenOrLeft) {
  add(t);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{hotKeySignature, 1}}),
            platform::noErr);
  EXPECT_EQ(send({.kind = kEventHotKeyReleased, .hotKeyID = EventHotKeyID{hotKeySignature, 1}}),
            platform::noErr);
  told.clear();
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{platform::fourCharCode("swat"), 1}}),
            platform::eventNotHandledErr);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{hotKeySignature, 2}}),
            platform::eventNotHandledErr);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed}), platform::eventParameterNotFoundErr)
      << "the status as it is";
  EXPECT_EQ(handleEvent(nullptr), platform::eventNotHandledErr);
  const CarbonEvent other{.kind = 2, .hotKeyID = EventHotKeyID{hotKeySignature, 1}};
  EXPECT_EQ(handleEvent(&other), platform::eventNotHandledErr);
  EXPECT_TRUE(told.empty());
}

TEST_F(CarbonKeyboardShortcutsTest, AForeignHotKeyStaysForOtherHandlers) {
  int seen = 0;
  const std::array types = {platform::EventTypeSpec{platform::kEventClassKeyboard, kEventHotKeyPressed}};
  ASSERT_TRUE(desktop.keyboard.InstallEventHandler(
      [&](const CarbonEvent*) {
        ++seen;
        return platform::noErr;
      },
      types));
  add(t);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{1, 1}}), platform::noErr);
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{hotKeySignature, 1}}),
            platform::noErr);
  EXPECT_EQ(seen, 1) << "an event that was taken went on";
}

TEST_F(CarbonKeyboardShortcutsTest, UnregisteringTakesEveryEntryOfTheShortcut) {
  add(t);
  add(r);
  add(t);
  unregister(t);
  EXPECT_EQ(ids(), std::vector<std::uint32_t>{2});
  EXPECT_EQ(desktop.keyboard.press(t.combination()), 0);
  unregisterAll();
  EXPECT_TRUE(keyboard().registrations.empty());
}

TEST_F(CarbonKeyboardShortcutsTest, AnActionMayUnregisterItsOwnKey) {
  registerShortcut(t,
                   [this](const Shortcut& shortcut) {
                     unregister(shortcut);
                     told.push_back("down " + std::to_string(shortcut.carbonKeyCode()));
                   },
                   {});
  desktop.keyboard.press(t.combination());
  EXPECT_EQ(told, Strings{"down 17"});
  EXPECT_TRUE(keyboard().registrations.empty());
}

TEST_F(CarbonKeyboardShortcutsTest, WhileAMenuIsOpenRawKeysAreMatchedAndHotKeysAreLetGo) {
  add(t);
  add(r);
  KeyboardShortcuts::setIsMenuOpen(true);
  EXPECT_TRUE(keyboard().registrations.empty());
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 768U | 0x400U}), platform::noErr)
      << "Caps Lock doesn't count";
  EXPECT_EQ(send({.kind = kEventRawKeyUp, .keyCode = 17U, .keyModifiers = 768U}), platform::noErr);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 256U}),
            platform::eventNotHandledErr);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U}), platform::eventParameterNotFoundErr);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyModifiers = 768U}), platform::eventParameterNotFoundErr);
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{hotKeySignature, 1}}),
            platform::eventNotHandledErr)
      << "a hot key event reached the handler";
  EXPECT_EQ(told, (Strings{"down 17", "up 17"}));
}

TEST_F(CarbonKeyboardShortcutsTest, AClosedMenuRegistersAgainUnderTheSameNumbers) {
  add(t);
  add(r);
  KeyboardShortcuts::setIsMenuOpen(true);
  KeyboardShortcuts::setIsMenuOpen(false);
  EXPECT_EQ(ids(), (std::vector<std::uint32_t>{1, 2}));
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 768U}),
            platform::eventNotHandledErr);
  desktop.keyboard.press(t.combination());
  EXPECT_EQ(told, Strings{"down 17"});
  add(Shortcut(1, 256));
  EXPECT_EQ(ids(), (std::vector<std::uint32_t>{1, 2, 3}));
}

TEST_F(CarbonKeyboardShortcutsTest, WhatWasTakenMeanwhileIsForgotten) {
  add(t);
  add(r);
  KeyboardShortcuts::setIsMenuOpen(true);
  desktop.keyboard.heldByOthers = {t.combination()};
  KeyboardShortcuts::setIsMenuOpen(false);
  EXPECT_EQ(ids(), std::vector<std::uint32_t>{2});
  desktop.keyboard.heldByOthers.clear();
  KeyboardShortcuts::setIsMenuOpen(true);
  KeyboardShortcuts::setIsMenuOpen(false);
  EXPECT_EQ(ids(), std::vector<std::uint32_t>{2});
}

TEST_F(CarbonKeyboardShortcutsTest, WhileDisabledNeitherKindArrives) {
  add(t);
  KeyboardShortcuts::setIsEnabled(false);
  EXPECT_TRUE(keyboard().registrations.empty());
  EXPECT_EQ(send({.kind = kEventHotKeyPressed, .hotKeyID = EventHotKeyID{hotKeySignature, 1}}),
            platform::eventNotHandledErr);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 768U}),
            platform::eventNotHandledErr);
  KeyboardShortcuts::setIsMenuOpen(true);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 768U}),
            platform::eventNotHandledErr)
      << "disabled counts more than an open menu";
  EXPECT_TRUE(told.empty());
  KeyboardShortcuts::setIsEnabled(true);
  EXPECT_EQ(send({.kind = kEventRawKeyDown, .keyCode = 17U, .keyModifiers = 768U}), platform::noErr);
}

TEST_F(CarbonKeyboardShortcutsTest, TheSameValueAgainDoesNothing) {
  add(t);
  int changes = 0;
  desktop.keyboard.onChange = [&] { ++changes; };
  KeyboardShortcuts::setIsEnabled(true);
  KeyboardShortcuts::setIsMenuOpen(false);
  EXPECT_EQ(changes, 0);
  KeyboardShortcuts::setIsMenuOpen(true);
  KeyboardShortcuts::setIsMenuOpen(true);
  EXPECT_EQ(changes, 1);
  desktop.keyboard.onChange = nullptr;
}

TEST_F(CarbonKeyboardShortcutsTest, ARegistrationIsNeverHeldTwice) {
  add(t);
  EXPECT_EQ(keyboard().registrations.size(), 1U) << "setting up the handler registered it a second time";
  updateEventHandler();
  EXPECT_EQ(keyboard().registrations.size(), 1U);
  unregister(t);
  EXPECT_TRUE(keyboard().registrations.empty());
}

TEST_F(CarbonKeyboardShortcutsTest, OneRegisteredWhileDisabledWorksAfterwards) {
  add(t);
  KeyboardShortcuts::setIsEnabled(false);
  add(r);
  KeyboardShortcuts::setIsEnabled(true);
  EXPECT_EQ(keyboard().registrations.size(), 2U);
  desktop.keyboard.press(r.combination());
  EXPECT_EQ(told, Strings{"down 15"});
}

TEST_F(CarbonKeyboardShortcutsTest, AHandlerThatCannotBeInstalledLeavesTheKeysInert) {
  desktop.keyboard.installsHandlers = false;
  add(t);
  desktop.keyboard.press(t.combination());
  EXPECT_TRUE(told.empty());
  KeyboardShortcuts::setIsEnabled(false);
  EXPECT_EQ(keyboard().registrations.size(), 1U) << "without a handler there is nothing to adapt";
  KeyboardShortcuts::setIsEnabled(true);
  desktop.keyboard.installsHandlers = true;
  add(r);
  desktop.keyboard.press(t.combination());
  EXPECT_EQ(told, Strings{"down 17"}) << "the next registration tries again";
}

}  // namespace
}  // namespace velkin::CarbonKeyboardShortcuts
