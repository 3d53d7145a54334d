#include "Helpers/ViewAddresses.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "unit/AppFixture.h"

#include <utility>

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
  EXPECT_TRUE(controller.isFindingWebState()->showToolbar.get());
  EXPECT_TRUE(defaults.showToolBar());
  menuItem("Show Toolbar")->action();
  EXPECT_FALSE(controller.isFindingWebState()->showToolbar.get());
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
  ASSERT_TRUE(controller.isShowingPopUpMenu());
  menuItem("Toggle Menu")->action();
  EXPECT_FALSE(controller.isShowingPopUpMenu());
  EXPECT_EQ(controller.menuBarItem().menu, nullptr);
}

TEST_F(PanelsTest, PreviewOnlyLogs) {
  launch().previewClicked();
  EXPECT_TRUE(hasLogged("Preview click!"));
}

TEST_F(PanelsTest, HomeReloadsTheConfiguredAddress) {
  auto& controller = launch();
  const auto loads = engineOf(controller.chatWebView()).loads.size();
  controller.homeClicked();
  EXPECT_EQ(engineOf(controller.chatWebView()).loads.size(), loads + 1);
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
  ASSERT_NE(controller.aboutHostingController(), nullptr);
  EXPECT_EQ(controller.aboutHostingController()->title, "Velkin");
  controller.aboutPanel().close();
  EXPECT_EQ(controller.aboutHostingController(), nullptr);
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
  const auto& tree = platform::headlessTree(*controller.shortcutsHostingController());
  for (const auto* text :
       {"Misc", "No shortcuts here.", "Open it", "command one", "Search", "command two"})
    EXPECT_TRUE(tree.showsText(text)) << text;
}

TEST_F(PanelsTest, TheShortcutsPanelHasRecordersWhereThereAreGlobalShortcuts) {
  auto& controller = launch();
  controller.shortcutsClicked();
  const auto& tree = platform::headlessTree(*controller.shortcutsHostingController());
  EXPECT_TRUE(tree.showsText("PopUp:"));
  EXPECT_TRUE(tree.showsText("SearchBar:"));
}

TEST_F(PanelsTest, ClosingOnePanelLetsGoOfTheContentOfEachThatIsVisible) {
  auto& controller = launch();
  controller.aboutClicked();
  controller.shortcutsClicked();
  controller.appearanceClicked();
  controller.appearancePanel().close();
  EXPECT_EQ(controller.aboutHostingController(), nullptr);
  EXPECT_EQ(controller.shortcutsHostingController(), nullptr);
  EXPECT_EQ(controller.appearanceHostingController(), nullptr);
  EXPECT_TRUE(controller.aboutPanel().isVisible());
  EXPECT_NE(controller.aboutPanel().contentViewController(), nullptr) << "what is on show stays";
}

TEST_F(PanelsTest, ContentOfAPanelThatIsntVisibleStaysWhenAnotherCloses) {
  auto& controller = launch();
  const auto screens = std::exchange(desktop.attachedScreens, {});
  controller.aboutClicked();
  controller.shortcutsClicked();
  desktop.attachedScreens = screens;
  controller.appearanceClicked();
  controller.appearancePanel().close();
  EXPECT_NE(controller.aboutHostingController(), nullptr);
  EXPECT_NE(controller.shortcutsHostingController(), nullptr);
  EXPECT_EQ(controller.appearanceHostingController(), nullptr);
}

TEST_F(PanelsTest, AskingForAVisiblePanelLeavesItsOldContentOnShow) {
  auto& controller = launch();
  controller.aboutClicked();
  controller.shortcutsClicked();
  controller.appearanceClicked();
  const auto about = controller.aboutPanel().contentViewController();
  const auto shortcuts = controller.shortcutsPanel().contentViewController();
  const auto appearance = controller.appearancePanel().contentViewController();
  log.clear();
  controller.aboutClicked();
  EXPECT_FALSE(hasLogged("About click!"));
  EXPECT_EQ(controller.aboutHostingController(), nullptr);
  EXPECT_EQ(controller.aboutPanel().contentViewController(), about);
  controller.appearanceClicked();
  EXPECT_FALSE(hasLogged("Appearance... click!"));
  EXPECT_EQ(controller.appearanceHostingController(), nullptr);
  EXPECT_EQ(controller.appearancePanel().contentViewController(), appearance);
  controller.shortcutsClicked();
  EXPECT_TRUE(hasLogged("Shortcuts click!"));
  EXPECT_NE(controller.shortcutsHostingController(), shortcuts);
  EXPECT_NE(controller.shortcutsHostingController(), nullptr);
  EXPECT_EQ(controller.shortcutsPanel().contentViewController(), shortcuts);
}

TEST_F(PanelsTest, EachPanelStandsAtItsContentAndWithIt) {
  auto& controller = launch();
  controller.aboutClicked();
  controller.shortcutsClicked();
  controller.appearanceClicked();
  EXPECT_EQ(controller.aboutPanel().contentViewController(), controller.aboutHostingController());
  EXPECT_EQ(controller.shortcutsPanel().contentViewController(), controller.shortcutsHostingController());
  EXPECT_EQ(controller.appearancePanel().contentViewController(), controller.appearanceHostingController());
}

TEST_F(PanelsTest, EachZoomHasItsNameInTheLog) {
  const std::vector<std::pair<double, std::string>> names = {{1.45, "largest"},  {1.2, "larger"},
                                                             {1.0, "normal"},    {0.8, "smaller"},
                                                             {0.55, "smallest"}, {0.7, "normal"}};
  auto& controller = launch();
  for (const auto& [zoom, name] : names) {
    defaults.set(zoom, UserDefault::webViewZoom);
    controller.appearanceClicked();
    EXPECT_TRUE(hasLogged("Appearance... click! " + name));
    controller.appearancePanel().close();
    log.clear();
  }
}

TEST_F(PanelsTest, StickyHoldsAnOpenPopoverAtOnce) {
  auto& controller = launch();
  leftClick();
  controller.stickyClicked();
  EXPECT_TRUE(defaults.stickyMenu());
  EXPECT_EQ(menuItem("Make Menu Sticky")->state(), NSMenuItem::State::on);
  popover().clickOutside();
  EXPECT_TRUE(popover().isShown());
  controller.stickyClicked();
  EXPECT_FALSE(defaults.stickyMenu());
  popover().clickOutside();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(PanelsTest, AToggleGoesByTheItemsStateAndNotByTheSetting) {
  auto& controller = launch();
  defaults.set(true, UserDefault::stickyMenu);
  controller.stickyClicked();
  EXPECT_TRUE(defaults.stickyMenu());
  defaults.set(false, UserDefault::showToolBar);
  controller.toolbarClicked();
  EXPECT_FALSE(defaults.showToolBar());
  EXPECT_FALSE(controller.isFindingWebState()->showToolbar.get());
}

TEST_F(PanelsTest, TogglesAreLogged) {
  auto& controller = launch();
  controller.stickyClicked();
  EXPECT_TRUE(log.back().starts_with("Q$: VelkinImpl.stickyClicked()"));
  controller.toolbarClicked();
  EXPECT_TRUE(log.back().starts_with("Q$: VelkinImpl.toolbarClicked()"));
  controller.experimentalClicked();
  EXPECT_TRUE(log.back().starts_with("Q$: VelkinImpl.experimentalClicked()"));
}

TEST_F(PanelsTest, TheToolbarGoesFromThePopoverAtOnce) {
  auto& controller = launch();
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*controller.hostedWebView());
  EXPECT_EQ(tree.all<platform::ButtonContent>().size(), 6U);
  controller.toolbarClicked();
  desktop.queue.drain();
  EXPECT_TRUE(tree.all<platform::ButtonContent>().empty());
}

TEST_F(PanelsTest, ToggleMenuWithNoMenuUpPutsItUp) {
  auto& controller = launch();
  controller.preferencesClicked();
  EXPECT_TRUE(controller.isDismissingPopUpMenu());
  EXPECT_TRUE(controller.isShowingPopUpMenu());
  ASSERT_EQ(statusItem().poppedUp.size(), 1U);
  EXPECT_EQ(statusItem().poppedUp[0], controller.menu());
}

TEST_F(PanelsTest, TheCurrentPageIsTheOneThatReloadsAndOpensInTheBrowser) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  auto& controller = launch();
  controller.switchWebViews(WebViewSwitchType::jira);
  desktop.queue.drain();
  controller.reloadClicked();
  controller.openClicked();
  desktop.queue.drain();
  EXPECT_EQ(engineOf(controller.jiraWebView()).reloads, 1);
  EXPECT_EQ(engineOf(controller.jiraWebView()).reloadsFromOrigin, 0);
  EXPECT_EQ(engineOf(controller.chatWebView()).reloads, 0);
  ASSERT_EQ(desktop.workspace.opened.size(), 1U);
  EXPECT_EQ(desktop.workspace.opened[0], getUrl(WebViewSwitchType::jira));
  EXPECT_TRUE(hasLogged("Reload click!"));
  EXPECT_TRUE(hasLogged("Open click!"));
}

TEST_F(PanelsTest, TheFlagsOfTheViewsDontOutliveTheController) {
  auto& controller = launch();
  controller.setSidebarsForGroup(WebViewSwitchType::jira);
  controller.handleWindowFindOnPage();
  app.reset();
  const auto& state = *launch().isFindingWebState();
  EXPECT_FALSE(state.isJiring.get());
  EXPECT_FALSE(state.isSearching.get());
}

}  // namespace
}  // namespace velkin
