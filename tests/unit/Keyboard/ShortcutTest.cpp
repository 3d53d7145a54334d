#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/Shortcut.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSApplication.h"

#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

namespace velkin::KeyboardShortcuts {
namespace {

using platform::NSEvent;
using platform::NSMenu;
using platform::NSMenuItem;

class ShortcutTest : public testing::Test {
 protected:
  ShortcutTest() {
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~ShortcutTest() override {
    shutDown();
    platform::setDebugLogSink({});
  }

  platform::HeadlessPlatform desktop;
  std::vector<std::string> log;
};

constexpr int allFour = 0x1000 | 0x800 | 0x200 | 0x100;

TEST_F(ShortcutTest, ModifiersCorrespondInBothDirections) {
  const std::pair<ModifierFlags, std::uint32_t> rows[] = {
      {0x40000, 0x1000}, {0x80000, 0x800}, {0x20000, 0x200}, {0x100000, 0x100}};
  for (const auto& [flag, bit] : rows) {
    EXPECT_EQ(carbon(flag), bit);
    EXPECT_EQ(modifierFlags(bit), flag);
  }
  EXPECT_EQ(carbon(0xFFFFFFFF), static_cast<std::uint32_t>(allFour));
  EXPECT_EQ(modifierFlags(0xFFFFFFFF), 0x1E0000U);
  EXPECT_EQ(carbon(0x10000 | 0x800000), 0U) << "neither Caps Lock nor the function key belongs to a hot key";
}

TEST_F(ShortcutTest, OnlyTheFourModifiersSurvive) {
  EXPECT_EQ(Shortcut(17, 768), Shortcut(17, 768 | 0x400 | 0x10000));
  EXPECT_EQ(Shortcut(17, -1).carbonModifiers(), allFour);
  EXPECT_EQ(Shortcut(Key::t, NSEvent::commandFlag | NSEvent::shiftFlag | NSEvent::capsLockFlag),
            Shortcut(17, 768));
  EXPECT_EQ(Shortcut(Key::t).carbonModifiers(), 0);
}

TEST_F(ShortcutTest, EqualsFieldByField) {
  EXPECT_NE(Shortcut(17, 768), Shortcut(15, 768));
  EXPECT_NE(Shortcut(17, 768), Shortcut(17, 256));
  const std::unordered_set<Shortcut> set{Shortcut(17, 768), Shortcut(17, 768), Shortcut(17, 256),
                                         Shortcut(15, 768)};
  EXPECT_EQ(set.size(), 3U);
}

TEST_F(ShortcutTest, TellsItsKeyAndModifiers) {
  const Shortcut shortcut(17, 768);
  EXPECT_EQ(shortcut.key(), Key::t);
  EXPECT_EQ(shortcut.modifiers(), NSEvent::commandFlag | NSEvent::shiftFlag);
}

TEST_F(ShortcutTest, ComesOfKeyEventsOnly) {
  NSEvent event;
  event.keyCode = 0x11;
  event.modifierFlags = NSEvent::commandFlag | NSEvent::capsLockFlag;
  for (const auto type : {NSEvent::EventType::keyDown, NSEvent::EventType::keyUp}) {
    event.type = type;
    EXPECT_EQ(Shortcut::fromEvent(event), Shortcut(17, 256));
  }
  for (const auto type : {NSEvent::EventType::flagsChanged, NSEvent::EventType::leftMouseUp,
                          NSEvent::EventType::rightMouseDown}) {
    event.type = type;
    EXPECT_EQ(Shortcut::fromEvent(event), std::nullopt);
  }
}

TEST_F(ShortcutTest, AnEventsModifiersAreWithoutLocksAndWithoutWhatTheKeySaysOfItself) {
  NSEvent event;
  event.modifierFlags = 0xFFFFFFFF;
  EXPECT_EQ(modifiers(event), 0xFFFF0000U & ~(0x10000U | 0x200000U | 0x800000U));
  event.modifierFlags = NSEvent::optionFlag | 0x100 | NSEvent::capsLockFlag;
  EXPECT_EQ(modifiers(event), NSEvent::optionFlag) << "the low half tells which of two keys it was";
}

TEST_F(ShortcutTest, IsStoredAsTwoIntegers) {
  EXPECT_EQ(Shortcut(17, 768).json(), R"({"carbonKeyCode":17,"carbonModifiers":768})");
  EXPECT_EQ(Shortcut::fromJSON(R"({"carbonKeyCode":17,"carbonModifiers":768})"), Shortcut(17, 768));
  EXPECT_EQ(Shortcut::fromJSON(" {\"carbonModifiers\" : 768.0,\n\"more\":[], \"carbonKeyCode\" : 17}\n"),
            Shortcut(17, 768));
}

TEST_F(ShortcutTest, WhatIsNoStoredFormIsNoShortcut) {
  for (const std::string text :
       {"", "x", "null", "17", "[17,768]", "{}", R"({"carbonKeyCode":17})", R"({"carbonModifiers":768})",
        R"({"carbonKeyCode":"17","carbonModifiers":768})", R"({"carbonKeyCode":17,"carbonModifiers":null})",
        R"({"carbonKeyCode":17.5,"carbonModifiers":768})", R"({"carbonKeyCode":true,"carbonModifiers":768})",
        R"({"carbonKeyCode":1e40,"carbonModifiers":768})",
        R"({"carbonKeyCode":99999999999,"carbonModifiers":768})",
        R"({"carbonKeyCode":17,"carbonModifiers":768)", R"({"CarbonKeyCode":17,"carbonModifiers":768})",
        "\xFF"}) {
    EXPECT_EQ(Shortcut::fromJSON(text), std::nullopt) << text;
  }
}

TEST_F(ShortcutTest, TheGlyphsStandInTheirOrder) {
  EXPECT_EQ(Shortcut(17, allFour).description(), "⌃⌥⇧⌘T");
  EXPECT_EQ(Shortcut(17, 768).description(), "⇧⌘T");
  EXPECT_EQ(Shortcut(Key::f5).description(), "F5");
  EXPECT_EQ(modifierSymbols(0xFFFFFFFF), "⌃⌥⇧⌘🌐︎");
}

TEST_F(ShortcutTest, AKeyThatGivesNothingIsShownAsUnknown) {
  EXPECT_EQ(Shortcut(0x60 + 100, 256).description(), "⌘�");
  EXPECT_EQ(Shortcut(0x60 + 100, 256).keyToCharacter(), std::nullopt);
}

TEST_F(ShortcutTest, ALayoutThatGivesNothingShowsNoKeyButTheNamedOnes) {
  const Shortcut t(17, 768);
  desktop.keyboardLayout.reset();
  EXPECT_EQ(t.description(), "⇧⌘�");
  EXPECT_EQ(Shortcut(Key::upArrow).description(), "↑");
  desktop.keyboardLayout = platform::HeadlessInputSource::us();
  desktop.keyboardLayout->hasData = false;
  EXPECT_EQ(t.description(), "⇧⌘�");
  desktop.keyboardLayout->hasData = true;
  desktop.keyboardLayout->status = -50;
  EXPECT_EQ(t.description(), "⇧⌘�");
  desktop.keyboardLayout->status = platform::noErr;
  desktop.keyboardLayout->characters.clear();
  EXPECT_EQ(t.description(), "⇧⌘�");
}

TEST_F(ShortcutTest, TheLayoutInUseNamesTheKeyAndUpperCaseIsUnicodes) {
  desktop.keyboardLayout->characters[0x10] = "z";
  EXPECT_EQ(Shortcut(Key::y, NSEvent::commandFlag).description(), "⌘Z");
  desktop.keyboardLayout->characters[0x1B] = "ß";
  EXPECT_EQ(Shortcut(Key::minus).description(), "SS");
  desktop.keyboardLayout->characters[0x29] = "ö";
  EXPECT_EQ(Shortcut(Key::semicolon).description(), "Ö");
  EXPECT_EQ(Shortcut(Key::semicolon).keyToCharacter(), "ö");
}

TEST_F(ShortcutTest, NamedKeysHaveTheirText) {
  const std::pair<Key, const char*> rows[] = {
      {Key::returnKey, "↩"},  {Key::deleteKey, "⌫"}, {Key::deleteForward, "⌦"}, {Key::end, "↘"},
      {Key::escape, "⎋"},     {Key::help, "?⃝"},      {Key::home, "↖"},          {Key::space, "⎵"},
      {Key::tab, "⇥"},        {Key::pageUp, "⇞"},    {Key::pageDown, "⇟"},      {Key::upArrow, "↑"},
      {Key::rightArrow, "→"}, {Key::downArrow, "↓"}, {Key::leftArrow, "←"}};
  // Whatever the layout says.
  for (int code = 0; code < 128; ++code)
    desktop.keyboardLayout->characters[static_cast<std::uint16_t>(code)] = "x";
  for (const auto& [key, text] : rows) EXPECT_EQ(Shortcut(key).keyToCharacter(), text);
  for (std::size_t i = 0; i < Key::functionKeys.size(); ++i) {
    EXPECT_EQ(Shortcut(Key::functionKeys[i]).keyToCharacter(), "F" + std::to_string(i + 1));
  }
  EXPECT_EQ(Shortcut(Key::t).keyToCharacter(), "x");
}

TEST_F(ShortcutTest, MenusNameFunctionKeysByTheirOwnCharacters) {
  EXPECT_EQ(Shortcut(17, 768).keyEquivalent(), "t");
  EXPECT_EQ(Shortcut(Key::f1).keyEquivalent(), "\uF704");
  EXPECT_EQ(Shortcut(Key::f20).keyEquivalent(), "\uF717");
  EXPECT_EQ(Shortcut(Key::help).keyEquivalent(), "?⃝") << "two code points, and yet one character";
  EXPECT_EQ(Shortcut(Key::volumeUp).keyEquivalent(), "");
  desktop.keyboardLayout->characters[0x29] = "ab";
  EXPECT_EQ(Shortcut(Key::semicolon).keyEquivalent(), "") << "a longer text, and no function key";
}

TEST_F(ShortcutTest, TheLayoutIsNotAskedForInTheBackground) {
  std::optional<std::string> text = "unset";
  std::thread([&] { text = Shortcut(17, 768).keyToCharacter(); }).join();
  EXPECT_EQ(text, std::nullopt);
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log.front().find("This method cannot be used in a `NSBackgroundActivityScheduler` task"),
            std::string::npos);
}

platform::PropertyListValue::Dictionary symbolic(platform::PropertyListValue isEnabled,
                                                 platform::PropertyListValue code,
                                                 platform::PropertyListValue modifiers) {
  return {{"kHISymbolicHotKeyEnabled", std::move(isEnabled)},
          {"kHISymbolicHotKeyCode", std::move(code)},
          {"kHISymbolicHotKeyModifiers", std::move(modifiers)}};
}

TEST_F(ShortcutTest, WhatTheDesktopKeepsToItselfIsTaken) {
  desktop.keyboard.symbolicHotKeys = {{symbolic(true, 17, 768 | 0x10000),
                                       symbolic(false, 15, 768),
                                       symbolic(true, "5", 768),
                                       symbolic(true, 5, 1.5),
                                       symbolic(1, 6, 256),
                                       {{"kHISymbolicHotKeyEnabled", true}}}};
  EXPECT_TRUE(Shortcut(17, 768).isTakenBySystem());
  EXPECT_FALSE(Shortcut(17, 256).isTakenBySystem());
  EXPECT_FALSE(Shortcut(15, 768).isTakenBySystem()) << "it is switched off";
  EXPECT_FALSE(Shortcut(5, 768).isTakenBySystem());
  EXPECT_FALSE(Shortcut(6, 256).isTakenBySystem());
}

TEST_F(ShortcutTest, WhatAnotherProgramHoldsIsTaken) {
  desktop.keyboard.heldByOthers = {Shortcut(17, 768).combination()};
  EXPECT_TRUE(Shortcut(17, 768).isTakenBySystem());
  EXPECT_FALSE(Shortcut(15, 768).isTakenBySystem());
}

TEST_F(ShortcutTest, F12AloneIsNeverTaken) {
  const Shortcut f12(Key::f12);
  desktop.keyboard.symbolicHotKeys = {{symbolic(true, 0x6F, 0), symbolic(true, 0x6F, 256)}};
  desktop.keyboard.heldByOthers = {f12.combination()};
  EXPECT_FALSE(f12.isTakenBySystem());
  EXPECT_TRUE(Shortcut(Key::f12, NSEvent::commandFlag).isTakenBySystem());
}

TEST_F(ShortcutTest, ADesktopThatCannotBeAskedTakesNothing) {
  desktop.keyboard.symbolicHotKeys.reset();
  EXPECT_FALSE(Shortcut(17, 768).isTakenBySystem());
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log.front().find("Could not get system keyboard shortcuts"), std::string::npos);
}

std::shared_ptr<NSMenuItem> item(const char* key, std::uint32_t mask = NSMenuItem::commandMask) {
  auto made = std::make_shared<NSMenuItem>("item", std::function<void()>{}, key);
  made->setKeyEquivalentModifierMask(mask);
  return made;
}

TEST_F(ShortcutTest, WithoutAMainMenuNothingIsTakenByIt) {
  EXPECT_EQ(Shortcut(17, 768).takenByMainMenu(), nullptr);
}

TEST_F(ShortcutTest, AMenuItemMatchesByCharacterAndModifiers) {
  auto menu = std::make_shared<NSMenu>();
  desktop.app.mainMenu = menu;
  const auto plain = item("t");
  const auto capital = item("T");
  const auto withShift = item("g", NSMenuItem::commandMask | NSMenuItem::shiftMask);
  for (const auto& each : {item(""), plain, capital, withShift}) menu->addItem(each);
  EXPECT_EQ(Shortcut(17, 256).takenByMainMenu(), plain);
  EXPECT_EQ(Shortcut(17, 768).takenByMainMenu(), capital) << "an upper case letter asks for Shift";
  EXPECT_EQ(Shortcut(5, 768).takenByMainMenu(), withShift);
  EXPECT_EQ(Shortcut(5, 256).takenByMainMenu(), nullptr);
  EXPECT_EQ(Shortcut(17, 0x1000).takenByMainMenu(), nullptr);
  EXPECT_EQ(Shortcut(0xB4, 256).takenByMainMenu(), nullptr) << "no character is not the empty one";
}

TEST_F(ShortcutTest, MenusAreSearchedInOrderAndInDepthFirst) {
  const auto innermost = item("t");
  const auto later = item("t");
  auto deepest = std::make_shared<NSMenu>();
  deepest->addItem(innermost);
  auto middle = std::make_shared<NSMenu>();
  middle->addItem(item("x"));
  middle->addItem(item("y"));
  middle->items().back()->submenu = deepest;
  auto menu = std::make_shared<NSMenu>();
  menu->addItem(item("a"));
  menu->items().back()->submenu = middle;
  menu->addItem(later);
  desktop.app.mainMenu = menu;
  EXPECT_EQ(Shortcut(17, 256).takenByMainMenu(), innermost);
  EXPECT_EQ(Shortcut(17, 256).menuItemWithMatchingShortcut(*deepest), innermost);
}

TEST_F(ShortcutTest, TheDesktopsFunctionKeysAreThirtyFive) {
  EXPECT_EQ(NSEvent::SpecialKey::functionKeys.size(), 35U);
  EXPECT_EQ(NSEvent::SpecialKey::functionKeys.front().rawValue, 0xF704U);
  EXPECT_EQ(NSEvent::SpecialKey::functionKeys.back().rawValue, 0xF726U);
  EXPECT_TRUE(NSEvent::SpecialKey{0xF726}.isFunctionKey());
  EXPECT_FALSE(NSEvent::SpecialKey{0xF727}.isFunctionKey());
  EXPECT_FALSE(NSEvent::SpecialKey{'\t'}.isFunctionKey());
}

struct KeyRow {
  const char* name;
  Key key;
  int code;
};

class KeyTest : public testing::TestWithParam<KeyRow> {};

TEST_P(KeyTest, HasItsPublishedNumber) { EXPECT_EQ(GetParam().key.rawValue, GetParam().code); }

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyTest,
    testing::Values(KeyRow{"a", Key::a, 0}, KeyRow{"s", Key::s, 1}, KeyRow{"d", Key::d, 2},
                    KeyRow{"f", Key::f, 3}, KeyRow{"h", Key::h, 4}, KeyRow{"g", Key::g, 5},
                    KeyRow{"z", Key::z, 6}, KeyRow{"x", Key::x, 7}, KeyRow{"c", Key::c, 8},
                    KeyRow{"v", Key::v, 9}, KeyRow{"b", Key::b, 11}, KeyRow{"q", Key::q, 12},
                    KeyRow{"w", Key::w, 13}, KeyRow{"e", Key::e, 14}, KeyRow{"r", Key::r, 15},
                    KeyRow{"y", Key::y, 16}, KeyRow{"t", Key::t, 17}, KeyRow{"o", Key::o, 31},
                    KeyRow{"u", Key::u, 32}, KeyRow{"i", Key::i, 34}, KeyRow{"p", Key::p, 35},
                    KeyRow{"l", Key::l, 37}, KeyRow{"j", Key::j, 38}, KeyRow{"k", Key::k, 40},
                    KeyRow{"n", Key::n, 45}, KeyRow{"m", Key::m, 46}));

INSTANTIATE_TEST_SUITE_P(Digits, KeyTest,
                         testing::Values(KeyRow{"zero", Key::zero, 29}, KeyRow{"one", Key::one, 18},
                                         KeyRow{"two", Key::two, 19}, KeyRow{"three", Key::three, 20},
                                         KeyRow{"four", Key::four, 21}, KeyRow{"five", Key::five, 23},
                                         KeyRow{"six", Key::six, 22}, KeyRow{"seven", Key::seven, 26},
                                         KeyRow{"eight", Key::eight, 28}, KeyRow{"nine", Key::nine, 25}));

INSTANTIATE_TEST_SUITE_P(
    Modifiers, KeyTest,
    testing::Values(KeyRow{"capsLock", Key::capsLock, 57}, KeyRow{"shift", Key::shift, 56},
                    KeyRow{"function", Key::function, 63}, KeyRow{"control", Key::control, 59},
                    KeyRow{"option", Key::option, 58}, KeyRow{"command", Key::command, 55},
                    KeyRow{"rightCommand", Key::rightCommand, 54},
                    KeyRow{"rightOption", Key::rightOption, 61},
                    KeyRow{"rightControl", Key::rightControl, 62},
                    KeyRow{"rightShift", Key::rightShift, 60}));

INSTANTIATE_TEST_SUITE_P(
    Others, KeyTest,
    testing::Values(KeyRow{"return", Key::returnKey, 36}, KeyRow{"backslash", Key::backslash, 42},
                    KeyRow{"backtick", Key::backtick, 50}, KeyRow{"comma", Key::comma, 43},
                    KeyRow{"equal", Key::equal, 24}, KeyRow{"minus", Key::minus, 27},
                    KeyRow{"period", Key::period, 47}, KeyRow{"quote", Key::quote, 39},
                    KeyRow{"semicolon", Key::semicolon, 41}, KeyRow{"slash", Key::slash, 44},
                    KeyRow{"space", Key::space, 49}, KeyRow{"tab", Key::tab, 48},
                    KeyRow{"leftBracket", Key::leftBracket, 33},
                    KeyRow{"rightBracket", Key::rightBracket, 30}, KeyRow{"pageUp", Key::pageUp, 116},
                    KeyRow{"pageDown", Key::pageDown, 121}, KeyRow{"home", Key::home, 115},
                    KeyRow{"end", Key::end, 119}, KeyRow{"upArrow", Key::upArrow, 126},
                    KeyRow{"rightArrow", Key::rightArrow, 124}, KeyRow{"downArrow", Key::downArrow, 125},
                    KeyRow{"leftArrow", Key::leftArrow, 123}, KeyRow{"escape", Key::escape, 53},
                    KeyRow{"delete", Key::deleteKey, 51}, KeyRow{"deleteForward", Key::deleteForward, 117},
                    KeyRow{"help", Key::help, 114}, KeyRow{"mute", Key::mute, 74},
                    KeyRow{"volumeUp", Key::volumeUp, 72}, KeyRow{"volumeDown", Key::volumeDown, 73}));

INSTANTIATE_TEST_SUITE_P(
    FunctionKeys, KeyTest,
    testing::Values(KeyRow{"f1", Key::f1, 122}, KeyRow{"f2", Key::f2, 120}, KeyRow{"f3", Key::f3, 99},
                    KeyRow{"f4", Key::f4, 118}, KeyRow{"f5", Key::f5, 96}, KeyRow{"f6", Key::f6, 97},
                    KeyRow{"f7", Key::f7, 98}, KeyRow{"f8", Key::f8, 100}, KeyRow{"f9", Key::f9, 101},
                    KeyRow{"f10", Key::f10, 109}, KeyRow{"f11", Key::f11, 103}, KeyRow{"f12", Key::f12, 111},
                    KeyRow{"f13", Key::f13, 105}, KeyRow{"f14", Key::f14, 107}, KeyRow{"f15", Key::f15, 113},
                    KeyRow{"f16", Key::f16, 106}, KeyRow{"f17", Key::f17, 64}, KeyRow{"f18", Key::f18, 79},
                    KeyRow{"f19", Key::f19, 80}, KeyRow{"f20", Key::f20, 90}));

INSTANTIATE_TEST_SUITE_P(
    Keypad, KeyTest,
    testing::Values(KeyRow{"0", Key::keypad0, 82}, KeyRow{"1", Key::keypad1, 83},
                    KeyRow{"2", Key::keypad2, 84}, KeyRow{"3", Key::keypad3, 85},
                    KeyRow{"4", Key::keypad4, 86}, KeyRow{"5", Key::keypad5, 87},
                    KeyRow{"6", Key::keypad6, 88}, KeyRow{"7", Key::keypad7, 89},
                    KeyRow{"8", Key::keypad8, 91}, KeyRow{"9", Key::keypad9, 92},
                    KeyRow{"clear", Key::keypadClear, 71}, KeyRow{"decimal", Key::keypadDecimal, 65},
                    KeyRow{"divide", Key::keypadDivide, 75}, KeyRow{"enter", Key::keypadEnter, 76},
                    KeyRow{"equals", Key::keypadEquals, 81}, KeyRow{"minus", Key::keypadMinus, 78},
                    KeyRow{"multiply", Key::keypadMultiply, 67}, KeyRow{"plus", Key::keypadPlus, 69}));

TEST(FunctionKeyTest, FunctionKeysAreThoseTwenty) {
  EXPECT_TRUE(Key::f1.isFunctionKey());
  EXPECT_TRUE(Key::f20.isFunctionKey());
  EXPECT_FALSE(Key::escape.isFunctionKey());
  EXPECT_FALSE(Key::function.isFunctionKey());
}

}  // namespace
}  // namespace velkin::KeyboardShortcuts
