#include "Keyboard/VirtualKeyCode.h"
#include "Platform/NSApplication.h"
#include "unit/AppFixture.h"

#include <string>

namespace velkin {
namespace {

using platform::NSEvent;

class DesktopKeysTest : public AppFixture {
 protected:
  DesktopKeysTest() {
    settleIn();
    controller = &launch();
    leftClick();
  }

  /// True if the key went on to what has the keyboard.
  bool press(std::uint16_t code, std::uint32_t modifiers) {
    return platform::NSApp()
        .filterByMonitors({.type = NSEvent::EventType::keyDown,
                           .keyCode = code,
                           .modifierFlags = modifiers,
                           .charactersIgnoringModifiers = ""})
        .has_value();
  }
  platform::HeadlessWebView& page() { return engineOf(controller->chatWebView()); }

  VelkinImpl* controller;
};

TEST_F(DesktopKeysTest, AltWithTheArrowsGoesBackAndForward) {
  const auto first = *page().url();
  page().load(platform::URLRequest{*platform::URL::parse("https://elsewhere.example/")});
  page().backList = {first};
  EXPECT_FALSE(press(key::left, NSEvent::optionFlag));
  EXPECT_EQ(page().url(), first);
  EXPECT_FALSE(press(key::right, NSEvent::optionFlag));
  EXPECT_NE(page().url(), first);
}

TEST_F(DesktopKeysTest, InATextTheArrowsAreTheTexts) {
  page().backList = {*platform::URL::parse("https://elsewhere.example/")};
  desktop.app.isEditingText = true;
  const auto before = page().url();
  EXPECT_TRUE(press(key::left, NSEvent::optionFlag));
  EXPECT_EQ(page().url(), before);
}

TEST_F(DesktopKeysTest, WithoutThePopoverAndWithOtherModifiersTheyAreNobodys) {
  page().backList = {*platform::URL::parse("https://elsewhere.example/")};
  const auto before = page().url();
  EXPECT_TRUE(press(key::left, NSEvent::optionFlag | NSEvent::shiftFlag));
  EXPECT_TRUE(press(key::left, 0));
  leftClick();
  EXPECT_TRUE(press(key::left, NSEvent::optionFlag));
  EXPECT_EQ(page().url(), before);
}

TEST_F(DesktopKeysTest, CtrlWithBackspaceAndDeleteTakesAWord) {
  desktop.app.responder = [](const std::string& selector) { return selector.starts_with("deleteWord"); };
  EXPECT_FALSE(press(key::deleteKey, NSEvent::commandFlag));
  EXPECT_FALSE(press(key::forwardDelete, NSEvent::commandFlag));
  EXPECT_EQ(desktop.app.sentActions, (std::vector<std::string>{"deleteWordBackward:", "deleteWordForward:"}));
}

TEST_F(DesktopKeysTest, BackspaceAloneTakesACharacter) {
  desktop.app.responder = [](const std::string&) { return true; };
  EXPECT_FALSE(press(key::deleteKey, 0));
  EXPECT_EQ(desktop.app.sentActions, std::vector<std::string>{"deleteBackward:"});
}

}  // namespace
}  // namespace velkin
