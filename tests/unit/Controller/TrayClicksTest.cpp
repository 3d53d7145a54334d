#include "Platform/TrayClicks.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

/// A desktop whose tray keeps the single click for the menu.
class TrayClicksTest : public AppFixture {
 protected:
  TrayClicksTest() { platform::setTrayClicks(platform::TrayClicks::menu); }
  ~TrayClicksTest() override { platform::setTrayClicks(platform::TrayClicks::action); }

  void choose(std::string_view title) {
    rightClick();
    auto* item = menuItem(title);
    ASSERT_NE(item, nullptr);
    statusItem().closeMenu(item);
    desktop.queue.drain();
  }
};

TEST_F(TrayClicksTest, WhatAClickDoesElsewhereStandsAboveTheOtherItems) {
  launch();
  const auto& items = statusItem().preparedMenu->items();
  ASSERT_EQ(items.size(), 18U);
  EXPECT_EQ(items[0]->title(), "Open Velkin");
  EXPECT_EQ(items[1]->title(), "Ask…");
  EXPECT_TRUE(items[2]->isSeparatorItem());
  EXPECT_EQ(items[3]->title(), "1.0.0 (23)");
  EXPECT_TRUE(items[0]->isEnabled());
  EXPECT_TRUE(items[1]->isEnabled());
}

TEST_F(TrayClicksTest, WhereAClickOpensThePopoverTheMenuHasNoSuchItems) {
  platform::setTrayClicks(platform::TrayClicks::action);
  launch();
  EXPECT_EQ(statusItem().preparedMenu->items().size(), 15U);
  EXPECT_EQ(menuItem("Open Velkin"), nullptr);
}

TEST_F(TrayClicksTest, OpenOpensThePopoverAndLeavesAnOpenOneOpen) {
  settleIn();
  launch();
  choose("Open Velkin");
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(popover().behavior, platform::NSPopover::Behavior::transient);
  choose("Open Velkin");
  EXPECT_TRUE(popover().isShown());
}

TEST_F(TrayClicksTest, AskBringsUpTheSearchBarAndLeavesAnOpenOneOpen) {
  settleIn();
  auto& controller = launch();
  choose("Ask…");
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
  EXPECT_FALSE(popover().isShown());
  choose("Ask…");
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
}

TEST_F(TrayClicksTest, ANewUserIsToldOfTheDoubleClick) {
  launch();
  desktop.queue.advance(5);
  ASSERT_EQ(desktop.workspace.delivered.size(), 1U);
  EXPECT_EQ(desktop.workspace.delivered[0].informativeText,
            "Ctrl+Shift+T opens it, Ctrl+Shift+R asks a question. A double click on its icon opens it, and a "
            "single one "
            "its menu.");
}

}  // namespace
}  // namespace velkin
