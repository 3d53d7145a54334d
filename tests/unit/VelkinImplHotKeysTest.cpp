#include "Keyboard/KeyboardShortcuts.h"
#include "unit/AppFixture.h"

#include <algorithm>

namespace velkin {
namespace {

using KeyboardShortcuts::Name;
using KeyboardShortcuts::Shortcut;

class VelkinImplHotKeysTest : public AppFixture {
 protected:
  VelkinImplHotKeysTest() { settleIn(); }
  int press(const Shortcut& shortcut) { return desktop.keyboard.press(shortcut.combination()); }
  void store(const std::string& name, platform::PropertyListValue value) {
    desktop.userDefaults.setObject(std::move(value), "KeyboardShortcuts_" + name);
  }
  auto timesLogged(const std::string& line) const { return std::count(log.begin(), log.end(), line); }

  const Shortcut popUp{17, 768};
  const Shortcut searchBar{15, 768};
};

TEST_F(VelkinImplHotKeysTest, ALaunchWritesTheDefaultsAndRegistersThem) {
  launch();
  EXPECT_EQ(desktop.userDefaults.stringForKey("KeyboardShortcuts_popUpShortcut"),
            R"({"carbonKeyCode":17,"carbonModifiers":768})");
  EXPECT_EQ(desktop.userDefaults.stringForKey("KeyboardShortcuts_searchBarShortcut"),
            R"({"carbonKeyCode":15,"carbonModifiers":768})");
  EXPECT_TRUE(desktop.keyboard.isRegistered(popUp.combination()));
  EXPECT_TRUE(desktop.keyboard.isRegistered(searchBar.combination()));
  EXPECT_EQ(desktop.keyboard.registrations.size(), 2U);
}

TEST_F(VelkinImplHotKeysTest, TheyAreRegisteredBehindTheStatusItemAndBeforeTheFirstView) {
  bool hadMenu = false;
  bool hadView = true;
  std::vector<platform::HotKeyCombination> order;
  desktop.keyboard.onChange = [&] {
    for (const auto& [ref, registration] : desktop.keyboard.registrations) {
      if (std::find(order.begin(), order.end(), registration.combination) == order.end())
        order.push_back(registration.combination);
    }
    if (order.size() > 1) return;
    hadMenu = !desktop.statusItems.empty() && statusItem().preparedMenu != nullptr;
    hadView = popover().contentViewController() != nullptr;
  };
  launch();
  desktop.keyboard.onChange = nullptr;
  EXPECT_TRUE(hadMenu);
  EXPECT_FALSE(hadView);
  EXPECT_EQ(order, (std::vector{searchBar.combination(), popUp.combination()}));
}

TEST_F(VelkinImplHotKeysTest, ThePopUpShortcutOpensAndClosesThePopover) {
  launch();
  EXPECT_EQ(press(popUp), 1);
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(timesLogged("Q$: didUseGlobalHotKeys"), 1);
  press(popUp);
  EXPECT_FALSE(popover().isShown());
  EXPECT_EQ(timesLogged("Q$: didUseGlobalHotKeys"), 2);
}

TEST_F(VelkinImplHotKeysTest, ThePopUpShortcutEndsTheInitialLaunchAsAClickDoes) {
  auto& controller = launch();
  EXPECT_TRUE(controller.isInitialLaunch());
  press(popUp);
  EXPECT_FALSE(controller.isInitialLaunch());
}

TEST_F(VelkinImplHotKeysTest, TheSearchBarShortcutOpensAndClosesThePanel) {
  auto& controller = launch();
  EXPECT_FALSE(controller.isSearchBarOpen());
  press(searchBar);
  ASSERT_NE(controller.searchBarHostingController(), nullptr);
  EXPECT_TRUE(controller.isSearchBarOpen());
  const auto* first = controller.searchBarHostingController();
  EXPECT_TRUE(first->isVisible());
  press(searchBar);
  EXPECT_EQ(controller.searchBarHostingController(), nullptr);
  EXPECT_FALSE(controller.isSearchBarOpen());
  press(searchBar);
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
  EXPECT_EQ(timesLogged("Q$: handleSearchBarDelegate"), 3);
}

TEST_F(VelkinImplHotKeysTest, EscapeLeavesTheFlagAndTheShortcutWorksOn) {
  auto& controller = launch();
  press(searchBar);
  controller.handleEsc();
  EXPECT_EQ(controller.searchBarHostingController(), nullptr);
  EXPECT_TRUE(controller.isSearchBarOpen());
  press(searchBar);
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
  EXPECT_TRUE(controller.isSearchBarOpen());
}

TEST_F(VelkinImplHotKeysTest, WithNoScreenNothingOpensAndTheFlagTurnsAllTheSame) {
  auto& controller = launch();
  desktop.attachedScreens.clear();
  press(searchBar);
  EXPECT_EQ(controller.searchBarHostingController(), nullptr);
  EXPECT_TRUE(controller.isSearchBarOpen());
}

TEST_F(VelkinImplHotKeysTest, OpeningThePanelClosesThePopover) {
  launch();
  press(popUp);
  press(searchBar);
  EXPECT_FALSE(popover().isShown());
}

TEST_F(VelkinImplHotKeysTest, AStoredShortcutIsUsedInThePlaceOfTheDefault) {
  store("popUpShortcut", R"({"carbonKeyCode":5,"carbonModifiers":256})");
  launch();
  EXPECT_EQ(press(popUp), 0);
  EXPECT_EQ(press(Shortcut(5, 256)), 1);
  EXPECT_TRUE(popover().isShown());
}

TEST_F(VelkinImplHotKeysTest, ADisabledShortcutStaysDisabled) {
  store("popUpShortcut", false);
  launch();
  EXPECT_EQ(press(popUp), 0);
  EXPECT_EQ(desktop.userDefaults.valueForKey("KeyboardShortcuts_popUpShortcut"),
            platform::PropertyListValue(false));
}

TEST_F(VelkinImplHotKeysTest, ACorruptEntryDoesNoHarm) {
  store("popUpShortcut", "}{");
  launch();
  EXPECT_EQ(press(popUp), 0);
  EXPECT_EQ(press(searchBar), 1);
  EXPECT_EQ(desktop.userDefaults.stringForKey("KeyboardShortcuts_popUpShortcut"), "}{");
}

TEST_F(VelkinImplHotKeysTest, OneShortcutForBothDoesBoth) {
  store("popUpShortcut", R"({"carbonKeyCode":15,"carbonModifiers":768})");
  auto& controller = launch();
  EXPECT_EQ(press(searchBar), 1);
  EXPECT_EQ(timesLogged("Q$: didUseGlobalHotKeys"), 1);
  EXPECT_EQ(timesLogged("Q$: handleSearchBarDelegate"), 1);
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
}

TEST_F(VelkinImplHotKeysTest, TheControllerIsTheHotKeysDelegate) {
  HotkeySolutionDelegate& delegate = launch();
  delegate.didUseGlobalHotKeys();
  EXPECT_TRUE(popover().isShown());
  delegate.handleSearchBarDelegate();
  EXPECT_TRUE(app->menuBar->isSearchBarOpen());
}

TEST_F(VelkinImplHotKeysTest, TheControllersEndLetsTheKeysGo) {
  launch();
  app.reset();
  EXPECT_TRUE(desktop.keyboard.registrations.empty());
  EXPECT_TRUE(KeyboardShortcuts::registeredShortcuts().empty());
}

TEST_F(VelkinImplHotKeysTest, AViewIsShownByRequest) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  auto& controller = launch();
  controller.showView(WebViewSwitchType::jira);
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(defaults.lastVisibleWebView(), WebViewSwitchType::jira);
  controller.showView(WebViewSwitchType::jira);
  EXPECT_TRUE(popover().isShown()) << "a second request closed it";
  EXPECT_EQ(defaults.lastVisibleWebView(), WebViewSwitchType::jira);
  controller.showView(WebViewSwitchType::chatgpt);
  EXPECT_EQ(defaults.lastVisibleWebView(), WebViewSwitchType::chatgpt);
  EXPECT_TRUE(popover().isShown());
}

TEST_F(VelkinImplHotKeysTest, TheSearchBarIsShownByRequestAndStays) {
  auto& controller = launch();
  controller.showView(WebViewSwitchType::search);
  controller.showView(WebViewSwitchType::search);
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
}

}  // namespace
}  // namespace velkin
