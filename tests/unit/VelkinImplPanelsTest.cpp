#include "unit/AppFixture.h"

namespace velkin {
namespace {

using platform::NSMenuItem;

class PanelsTest : public AppFixture {
 protected:
  PanelsTest() {
    settleIn();
    desktop.attachedScreens = {{{{0, 0}, {2000, 1200}}, {{0, 0}, {2000, 1200}}}};
  }
};

TEST_F(PanelsTest, TheMenuHasItsFifteenEntriesInOrder) {
  launch();
  std::vector<std::string> titles;
  for (const auto& item : statusItem().preparedMenu->items()) {
    titles.push_back(item->isSeparatorItem() ? "-" : item->title());
  }
  EXPECT_EQ(titles,
            (std::vector<std::string>{"1.0.0 (23)", "-", "About Velkin", "Shortcuts", "-", "Make Menu Sticky",
                                      "Show Toolbar", "Use Experimental Scripting", "-", "Toggle Menu",
                                      "Appearance...", "Reload", "Open In Browser", "-", "Quit"}));
}

TEST_F(PanelsTest, KeyEquivalentsAreTheReferencesAndTheToolbarsHasOptionToo) {
  launch();
  const std::vector<std::pair<const char*, const char*>> keys = {
      {"About Velkin", ""},  {"Shortcuts", ""},        {"Make Menu Sticky", "S"},
      {"Show Toolbar", "t"}, {"Toggle Menu", ","},     {"Appearance...", "A"},
      {"Reload", "r"},       {"Open In Browser", "o"}, {"Quit", "q"}};
  for (const auto& [title, key] : keys) EXPECT_EQ(menuItem(title)->keyEquivalent(), key) << title;
  EXPECT_EQ(menuItem("Show Toolbar")->keyEquivalentModifierMask(), 0x180000U);
  EXPECT_EQ(menuItem("Reload")->keyEquivalentModifierMask(), 0x100000U);
}

TEST_F(PanelsTest, ScriptingIsHiddenAndEnabled) {
  launch();
  EXPECT_TRUE(menuItem("Use Experimental Scripting")->isHidden());
  EXPECT_TRUE(menuItem("Use Experimental Scripting")->isEnabled());
}

TEST_F(PanelsTest, EveryItemHasTheControllerAsItsTarget) {
  auto& controller = launch();
  for (const auto& item : controller.menuBarHelper().menuItems) {
    EXPECT_EQ(item->target, static_cast<MenuHelperDelegate*>(&controller));
  }
}

TEST_F(PanelsTest, WithoutADelegateAnItemDoesNothing) {
  const MenuHelper helper(nullptr);
  helper.quitMenuItem->action();
  EXPECT_EQ(helper.previewMenuItem->title(), "Preview");
}

TEST_F(PanelsTest, TheToolbarItemSetsTheSettingAndTheStateAtOnce) {
  defaults.set(false, UserDefault::showToolBar);
  auto& controller = launch();
  EXPECT_EQ(menuItem("Show Toolbar")->state(), NSMenuItem::State::off);
  menuItem("Show Toolbar")->action();
  EXPECT_TRUE(controller.isFindingWebState->showToolbar.get());
  EXPECT_TRUE(defaults.showToolBar());
  menuItem("Show Toolbar")->action();
  EXPECT_FALSE(controller.isFindingWebState->showToolbar.get());
}

TEST_F(PanelsTest, ScriptingIsStoredAsTheItemsState) {
  auto& controller = launch();
  controller.experimentalClicked();
  EXPECT_TRUE(defaults.experimentalEnabled());
  EXPECT_EQ(menuItem("Use Experimental Scripting")->state(), NSMenuItem::State::on);
  controller.experimentalClicked();
  EXPECT_FALSE(defaults.experimentalEnabled());
}

TEST_F(PanelsTest, ToggleMenuClearsTheMenuThatIsUp) {
  auto& controller = launch();
  rightClick();
  ASSERT_TRUE(controller.isShowingPopUpMenu);
  menuItem("Toggle Menu")->action();
  EXPECT_FALSE(controller.isShowingPopUpMenu);
  EXPECT_EQ(controller.menuBarItem->menu, nullptr);
}

TEST_F(PanelsTest, PreviewOnlyLogs) {
  launch().previewClicked();
  EXPECT_TRUE(hasLogged("Preview click!"));
}

TEST_F(PanelsTest, HomeReloadsTheConfiguredAddress) {
  auto& controller = launch();
  const auto loads = engineOf(controller.chatWebView).loads.size();
  controller.homeClicked();
  EXPECT_EQ(engineOf(controller.chatWebView).loads.size(), loads + 1);
}

struct PanelRow {
  const char* item;
  const char* title;
  platform::NSPoint origin;
};

class PanelTest : public PanelsTest, public testing::WithParamInterface<PanelRow> {
 protected:
  platform::HeadlessPanel* shown() {
    for (auto it = desktop.panels.rbegin(); it != desktop.panels.rend(); ++it) {
      if ((*it)->title() == GetParam().title) return *it;
    }
    return nullptr;
  }
  std::size_t panelsMade() const { return desktop.panels.size(); }
};

TEST_P(PanelTest, OpensFloatingAtItsPlace) {
  auto& controller = launch();
  menuItem(GetParam().item)->action();
  auto* panel = shown();
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->styleMask, 131U);
  EXPECT_TRUE(panel->isFloating);
  EXPECT_TRUE(panel->isVisible());
  EXPECT_EQ(panel->frame().origin, GetParam().origin);
  EXPECT_EQ(panel->delegate, &controller);
}

TEST_P(PanelTest, StaysOneWhenItIsOpenedTwice) {
  launch();
  menuItem(GetParam().item)->action();
  const auto made = panelsMade();
  menuItem(GetParam().item)->action();
  EXPECT_EQ(panelsMade(), made);
}

TEST_P(PanelTest, OpensAfreshOnceItWasClosed) {
  launch();
  menuItem(GetParam().item)->action();
  const auto* content = shown()->contentViewController().get();
  const std::weak_ptr alive = shown()->contentViewController();
  shown()->close();
  menuItem(GetParam().item)->action();
  EXPECT_TRUE(shown()->isVisible());
  EXPECT_TRUE(alive.expired() || shown()->contentViewController().get() != content);
}

TEST_P(PanelTest, DoesntOpenWithoutAScreen) {
  launch();
  desktop.attachedScreens.clear();
  menuItem(GetParam().item)->action();
  EXPECT_EQ(shown(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Panels, PanelTest,
    testing::Values(PanelRow{"About Velkin", "Velkin - About", {1000 - 192, 600 - 360}},
                    PanelRow{"Shortcuts", "Velkin - Shortcuts", {1000 - 240, 600 - 400}},
                    PanelRow{"Appearance...", "Velkin - Appearance", {1000 - 240, 600 - 400}}));

TEST_F(PanelsTest, ClosingAPanelLetsGoOfItsContent) {
  auto& controller = launch();
  controller.aboutClicked();
  controller.shortcutsClicked();
  ASSERT_NE(controller.aboutHostingController, nullptr);
  EXPECT_EQ(controller.aboutHostingController->title, "Velkin");
  controller.aboutPanel->close();
  EXPECT_EQ(controller.aboutHostingController, nullptr);
}

TEST_F(PanelsTest, TheAppearancePanelLogsTheZoomsCase) {
  defaults.set(0.8, UserDefault::webViewZoom);
  launch().appearanceClicked();
  EXPECT_TRUE(hasLogged("Appearance... click! smaller"));
}

TEST_F(PanelsTest, TheShortcutsPanelSaysWhereThereAreNoGlobalShortcutsAndWhatToDo) {
  desktop.keyboard.shownNotice =
      platform::HotKeyNotice{"No shortcuts here.", {{"Open it", "command one"}, {"Search", "command two"}}};
  auto& controller = launch();
  controller.shortcutsClicked();
  const auto& tree = platform::headlessTree(*controller.shortcutsHostingController);
  for (const auto* text :
       {"Shortcuts", "No shortcuts here.", "Open it", "command one", "Search", "command two"})
    EXPECT_TRUE(tree.showsText(text)) << text;
}

TEST_F(PanelsTest, TheShortcutsPanelSaysNothingOfThatWhereThereAreGlobalShortcuts) {
  auto& controller = launch();
  controller.shortcutsClicked();
  const auto& tree = platform::headlessTree(*controller.shortcutsHostingController);
  EXPECT_EQ(tree.all<platform::TextContent>().size(), 1U);
}

}  // namespace
}  // namespace velkin
