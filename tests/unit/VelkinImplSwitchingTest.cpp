#include "Platform/FatalError.h"
#include "unit/AppFixture.h"

#include <algorithm>

namespace velkin {
namespace {

using enum WebViewSwitchType;

class SwitchingTest : public AppFixture {
 protected:
  SwitchingTest() {
    settleIn();
    defaults.set(true, UserDefault::hemingwayEnabled);
    controller = &launch();
  }
  SharedState& state() { return *controller->isFindingWebState; }
  void switchTo(WebViewSwitchType type) {
    controller->switchWebViews(type);
    desktop.queue.drain();
  }
  std::vector<bool> openSideBars() {
    auto& s = state();
    return {s.isBarding.get(),      s.isBitBucketing.get(), s.isChatting.get(), s.isGitLabing.get(),
            s.isHemingwaying.get(), s.isJiring.get(),       s.isMarking.get()};
  }

  VelkinImpl* controller;
};

struct ViewRow {
  WebViewSwitchType type;
  const char* name;
};

class EachWebViewTest : public SwitchingTest, public testing::WithParamInterface<ViewRow> {
 protected:
  const WebView& view() {
    switch (GetParam().type) {
      case bard:
        return controller->bardWebView;
      case bitbucket:
        return controller->bitbucketWebView;
      case gitlab:
        return controller->gitlabWebView;
      case hemingway:
        return controller->hemingwayWebView;
      default:
        return controller->jiraWebView;
    }
  }
};

TEST_P(EachWebViewTest, TakesTheMainPlaceAndAskedForAgainFallsBackOnChat) {
  switchTo(GetParam().type);
  EXPECT_EQ(controller->currentWebView.webView, view().webView);
  EXPECT_EQ(defaults.lastVisibleWebView(), GetParam().type);
  switchTo(GetParam().type);
  EXPECT_EQ(controller->currentWebView.webView, controller->chatWebView.webView);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_P(EachWebViewTest, LeavesItsSidebarWhenItTakesTheMainPlace) {
  controller->setSidebarsForGroup(GetParam().type);
  switchTo(GetParam().type);
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_P(EachWebViewTest, KeepsChatsSidebarBesideItAndDropsItWhenChatComesBack) {
  state().isChatting.set(true);
  switchTo(GetParam().type);
  EXPECT_TRUE(state().isChatting.get());
  switchTo(GetParam().type);
  EXPECT_FALSE(state().isChatting.get());
}

TEST_P(EachWebViewTest, NeverOpensBesideItself) {
  switchTo(GetParam().type);
  controller->handleWindowBardOnPage();
  controller->handleWindowBitBucketOnPage();
  controller->handleWindowGitLabOnPage();
  controller->handleWindowHemingwayOnPage();
  controller->handleWindowJiraOnPage();
  controller->handleWindowChatOnPage();
  controller->handleWindowMarkdownOnPage();
  const auto open = openSideBars();
  EXPECT_EQ(std::count(open.begin(), open.end(), true), 6);
}

INSTANTIATE_TEST_SUITE_P(Views, EachWebViewTest,
                         testing::Values(ViewRow{bard, "bard"}, ViewRow{bitbucket, "bitbucket"},
                                         ViewRow{gitlab, "gitlab"}, ViewRow{hemingway, "hemingway"},
                                         ViewRow{jira, "jira"}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(SwitchingTest, TheScratchpadTakesTheMainPlaceAndFallsBackOnChat) {
  state().isMarking.set(true);
  switchTo(markdown);
  EXPECT_EQ(defaults.lastVisibleWebView(), markdown);
  EXPECT_FALSE(state().isMarking.get());
  EXPECT_TRUE(controller->isFindableView());
  switchTo(jira);
  switchTo(markdown);
  switchTo(markdown);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_EQ(controller->currentWebView.webView, controller->chatWebView.webView);
}

TEST_F(SwitchingTest, SidebarsDontOpenOnPagesThatHaveNone) {
  for (const auto type : {releaseNotes, onboarding, editUrls}) {
    switchTo(type);
    controller->handleWindowBardOnPage();
    controller->handleWindowMarkdownOnPage();
    EXPECT_EQ(openSideBars(), std::vector<bool>(7, false)) << rawValue(type);
  }
}

TEST_F(SwitchingTest, TheOnboardingHasItsSizeAndStaysClosed) {
  leftClick();
  switchTo(onboarding);
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
  EXPECT_FALSE(popover().isShown());
  EXPECT_EQ(defaults.lastVisibleWebView(), onboarding);
  EXPECT_FALSE(controller->isFindableView());
}

TEST_F(SwitchingTest, TheAddressesPageIsAPageOfItsOwn) {
  switchTo(editUrls);
  EXPECT_EQ(defaults.lastVisibleWebView(), editUrls);
  EXPECT_FALSE(controller->isFindableOrMarkdownView());
}

TEST_F(SwitchingTest, TheSearchPanelFloatsAtItsPlaceOnTheScreen) {
  desktop.attachedScreens = {{{{0, 0}, {2000, 1000}}, {{0, 0}, {2000, 1000}}}};
  switchTo(search);
  auto& panel = *desktop.panels.back();
  EXPECT_EQ(panel.frame(), (platform::NSRect{{1000 - 360, 500 * 1.3 - 100}, {720, 200}}));
  EXPECT_EQ(panel.styleMask, 129U);
  EXPECT_TRUE(panel.isFloating);
  EXPECT_TRUE(panel.isVisible());
  EXPECT_EQ(defaults.lastVisibleWebView(), search);
}

TEST_F(SwitchingTest, WithoutAScreenTheSearchChangesNothing) {
  desktop.attachedScreens.clear();
  switchTo(search);
  EXPECT_EQ(controller->searchBarHostingController, nullptr);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_F(SwitchingTest, EscapeClosesFindingThenTheSearchPanelThenThePopover) {
  switchTo(search);
  controller->switchWebViews(chatgpt);
  leftClick();
  controller->handleWindowFindOnPage();
  ASSERT_TRUE(state().isSearching.get());
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_NE(controller->searchBarHostingController, nullptr);
  controller->handleEsc();
  EXPECT_EQ(controller->searchBarHostingController, nullptr);
  EXPECT_TRUE(popover().isShown());
  controller->handleEsc();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(SwitchingTest, AFindBarThatIsntOnShowHoldsNothingBack) {
  controller->handleWindowFindOnPage();
  switchTo(search);
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_EQ(controller->searchBarHostingController, nullptr);
}

TEST_F(SwitchingTest, FindingNeedsAPageOrTheReleaseNotes) {
  switchTo(editUrls);
  controller->handleWindowFindOnPage();
  EXPECT_FALSE(state().isSearching.get());
  switchTo(releaseNotes);
  controller->handleWindowFindOnPage();
  EXPECT_TRUE(state().isSearching.get());
}

TEST_F(SwitchingTest, AnUnknownNumberIsChat) {
  switchTo(jira);
  controller->switchWebViewsClicked(99);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_TRUE(hasLogged("switchWebViews click!"));
}

TEST_F(SwitchingTest, TheCurrentWebViewCanFollowTheLastVisibleOne) {
  defaults.set(rawValue(gitlab), UserDefault::lastVisibleWebView);
  controller->updateCurrentWebView();
  EXPECT_EQ(controller->currentWebView.webView, controller->gitlabWebView.webView);
  defaults.set(rawValue(search), UserDefault::lastVisibleWebView);
  controller->updateCurrentWebView();
  EXPECT_EQ(controller->currentWebView.webView, controller->gitlabWebView.webView);
}

TEST_F(SwitchingTest, AGroupOpensItsMainViewAndItsSidebars) {
  controller->handleWindowGitLabOnPage();
  defaults.setSidebarGroup({.mainView = bard, .sideBar1 = jira, .sideBar2 = markdown},
                           UserDefault::sideBarGroup2);
  controller->handleSideGroupClick(2);
  EXPECT_EQ(defaults.lastVisibleWebView(), bard);
  EXPECT_EQ(openSideBars(), (std::vector<bool>{false, false, false, false, false, true, true}));
}

TEST_F(SwitchingTest, AGroupOfTheViewOnShowSetsItsSidebarsOnly) {
  defaults.setSidebarGroup({.mainView = chatgpt, .sideBar1 = jira}, UserDefault::sideBarGroup1);
  const auto host = controller->hostedWebView;
  controller->handleSideGroupClick(1);
  EXPECT_EQ(controller->hostedWebView, host);
  EXPECT_TRUE(state().isJiring.get());
}

TEST_F(SwitchingTest, AnEmptySlotAndANumberOutsideAreChat) {
  for (const int number : {3, 0, 5, -1}) {
    switchTo(jira);
    controller->handleSideGroupClick(number);
    EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt) << number;
  }
}

TEST_F(SwitchingTest, AGroupMayGoToFullSizeAndNeverLeavesIt) {
  leftClick();
  defaults.setSidebarGroup({.isFullScreen = true, .mainView = jira}, UserDefault::sideBarGroup1);
  defaults.setSidebarGroup({.isFullScreen = false, .mainView = bard}, UserDefault::sideBarGroup2);
  controller->handleSideGroupClick(1);
  EXPECT_TRUE(controller->getIsInFullScreenMode());
  controller->handleSideGroupClick(2);
  EXPECT_TRUE(controller->getIsInFullScreenMode());
}

TEST_F(SwitchingTest, AGroupStringFullOfNonsenseDoesNoHarm) {
  for (const char* text : {"zzzz", "9999", "----", "0", "5555555555", "\xff\xfe", " 0 1"}) {
    defaults.set(text, UserDefault::sideBarGroup4);
    controller->handleSideGroupClick(4);
    desktop.queue.drain();
    EXPECT_NE(popover().contentViewController(), nullptr) << text;
  }
}

TEST_F(SwitchingTest, AWrongViewForASidebarIsLoggedAndChangesNothing) {
  controller->setSidebarsForGroup(releaseNotes);
  EXPECT_TRUE(hasLogged("Error: Should not happen"));
  controller->setSidebarsForGroup(std::nullopt);
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_F(SwitchingTest, ClosingTheSidebarsClosesAllSeven) {
  for (const auto type : {chatgpt, bard, bitbucket, gitlab, hemingway, jira, markdown}) {
    controller->setSidebarsForGroup(type);
  }
  controller->closeSideBarViews();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_F(SwitchingTest, ResettingTheSidebarsKeepsThemOpen) {
  controller->handleWindowJiraOnPage();
  int changes = 0;
  const auto subscription = state().isJiring.subscribe([&] { ++changes; });
  controller->resetSideBarViews();
  EXPECT_EQ(changes, 2);
  EXPECT_TRUE(state().isJiring.get());
  EXPECT_FALSE(state().isBarding.get());
}

TEST_F(SwitchingTest, ChatHasTheStepAboveTheStoredZoomUntilItsHostAppliesIt) {
  const auto host = engineOf(controller->chatWebView).pageZoom();
  EXPECT_EQ(host, 1.0);
  defaults.set(0.8, UserDefault::webViewZoom);
  // Jira's host doesn't hold chat: so chat keeps the step above.
  switchTo(jira);
  EXPECT_EQ(engineOf(controller->chatWebView).pageZoom(), 1.0);
  EXPECT_EQ(engineOf(controller->jiraWebView).pageZoom(), 0.8);
  defaults.set(0.33, UserDefault::webViewZoom);
  switchTo(bard);
  EXPECT_EQ(engineOf(controller->chatWebView).pageZoom(), 0.8);
}

TEST_F(SwitchingTest, ASwitchAtTheLargestZoomIsFatal) {
  defaults.set(1.45, UserDefault::webViewZoom);
  EXPECT_EXIT(controller->switchWebViews(jira), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
}

TEST_F(SwitchingTest, ASwitchThatShowsAPageReopensThePopoverAndOthersDont) {
  leftClick();
  switchTo(jira);
  EXPECT_TRUE(popover().isShown());
  switchTo(editUrls);
  EXPECT_FALSE(popover().isShown());
}

}  // namespace
}  // namespace velkin
