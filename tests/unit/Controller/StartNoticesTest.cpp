#include "Controller/StartNotices.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/Name.h"
#include "Platform/CarbonEvents.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using KeyboardShortcuts::Name;

constexpr std::uint32_t modifiers = platform::carbon::cmdKey | platform::carbon::shiftKey;
constexpr platform::HotKeyCombination popUpKeys{0x11, modifiers};
constexpr platform::HotKeyCombination searchKeys{0x0F, modifiers};

class StartNoticesTest : public testing::Test {
 protected:
  ~StartNoticesTest() override { KeyboardShortcuts::shutDown(); }

  /// As the controller asks for its two names.
  void takeShortcuts() {
    KeyboardShortcuts::onKeyDown(Name::searchBarShortcut(), [] {});
    KeyboardShortcuts::onKeyDown(Name::popUpShortcut(), [] {});
  }
  void tell(bool isFreshInstall) {
    const auto timer = tellAfterStart(
        isFreshInstall, [this] { ++popovers; }, [this] { ++shortcutPanels; });
    desktop.queue.advance(5);
  }
  const std::vector<platform::NSUserNotification>& told() const { return desktop.workspace.delivered; }

  platform::HeadlessPlatform desktop;
  int popovers = 0;
  int shortcutPanels = 0;
};

TEST_F(StartNoticesTest, ANewUserHearsWhereTheProgramIsAndOpensItThere) {
  takeShortcuts();
  tell(true);
  ASSERT_EQ(told().size(), 1U);
  EXPECT_EQ(told()[0].title, "Velkin is in the tray.");
  EXPECT_EQ(told()[0].informativeText, "Ctrl+Shift+T opens it, Ctrl+Shift+R asks a question.");
  told()[0].action();
  EXPECT_EQ(popovers, 1);
}

TEST_F(StartNoticesTest, WhoKnowsItHearsNothing) {
  takeShortcuts();
  tell(false);
  EXPECT_TRUE(told().empty());
}

TEST_F(StartNoticesTest, KeysThatDontWorkAreNotPromised) {
  desktop.keyboard.heldByOthers = {popUpKeys, searchKeys};
  takeShortcuts();
  tell(true);
  ASSERT_EQ(told().size(), 2U);
  EXPECT_EQ(told()[0].informativeText, "");
}

TEST_F(StartNoticesTest, ATakenShortcutIsToldOnceForEachLoss) {
  desktop.keyboard.heldByOthers.insert(popUpKeys);
  takeShortcuts();
  tell(false);
  ASSERT_EQ(told().size(), 1U);
  EXPECT_EQ(told()[0].informativeText,
            "Another program uses Ctrl+Shift+T. Velkin's menu has other keys under Shortcuts.");
  told()[0].action();
  EXPECT_EQ(shortcutPanels, 1);
  tell(false);
  EXPECT_EQ(told().size(), 1U);
}

TEST_F(StartNoticesTest, NothingIsToldOnceTheTimerHasGone) {
  takeShortcuts();
  tellAfterStart(
      true, [] {}, [] {})
      .reset();
  desktop.queue.advance(5);
  EXPECT_TRUE(told().empty());
}

}  // namespace
}  // namespace velkin
