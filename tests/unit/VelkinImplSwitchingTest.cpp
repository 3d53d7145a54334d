#include "Platform/FatalError.h"
#include "Platform/Headless/HeadlessViewTree.h"
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
  SharedState& state() { return *controller->isFindingWebState(); }
  void switchTo(WebViewSwitchType type) {
    controller->switchWebViews(type);
    desktop.queue.drain();
  }
  std::vector<bool> openSideBars() {
    auto& s = state();
    return {s.isBarding.get(),      s.isBitBucketing.get(), s.isChatting.get(), s.isGitLabing.get(),
            s.isHemingwaying.get(), s.isJiring.get(),       s.isMarking.get()};
  }

  void openAll() {
    for (const auto type : {chatgpt, bard, bitbucket, gitlab, hemingway, jira, markdown}) {
      controller->setSidebarsForGroup(type);
    }
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
        return controller->bardWebView();
      case bitbucket:
        return controller->bitbucketWebView();
      case gitlab:
        return controller->gitlabWebView();
      case hemingway:
        return controller->hemingwayWebView();
      default:
        return controller->jiraWebView();
    }
  }
};

TEST_P(EachWebViewTest, TakesTheMainPlaceAndAskedForAgainFallsBackOnChat) {
  switchTo(GetParam().type);
  EXPECT_EQ(controller->currentWebView().webView, view().webView);
  EXPECT_EQ(defaults.lastVisibleWebView(), GetParam().type);
  switchTo(GetParam().type);
  EXPECT_EQ(controller->currentWebView().webView, controller->chatWebView().webView);
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
  EXPECT_EQ(controller->currentWebView().webView, controller->chatWebView().webView);
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
  EXPECT_EQ(controller->searchBarHostingController(), nullptr);
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
  EXPECT_NE(controller->searchBarHostingController(), nullptr);
  controller->handleEsc();
  EXPECT_EQ(controller->searchBarHostingController(), nullptr);
  EXPECT_TRUE(popover().isShown());
  controller->handleEsc();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(SwitchingTest, AFindBarThatIsntOnShowHoldsNothingBack) {
  controller->handleWindowFindOnPage();
  switchTo(search);
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_EQ(controller->searchBarHostingController(), nullptr);
}

TEST_F(SwitchingTest, FindingNeedsAPageWithAFindBar) {
  for (const auto view : {editUrls, releaseNotes, markdown}) {
    switchTo(view);
    controller->handleWindowFindOnPage();
    EXPECT_FALSE(state().isSearching.get()) << rawValue(view);
  }
  switchTo(jira);
  controller->handleWindowFindOnPage();
  EXPECT_TRUE(state().isSearching.get());
}

TEST_F(SwitchingTest, TheSearchBarLeavesThePopoversContentAsItIs) {
  switchTo(jira);
  const auto content = controller->hostedWebView();
  switchTo(search);
  EXPECT_EQ(controller->hostedWebView(), content);
  EXPECT_TRUE(controller->isFindableView());
  EXPECT_EQ(defaults.lastVisibleWebView(), search);
  controller->handleEsc();
  leftClick();
  EXPECT_EQ(defaults.lastVisibleWebView(), jira) << "find, sidebars and reload from origin work again";
  controller->handleWindowBardOnPage();
  EXPECT_TRUE(state().isBarding.get());
}

TEST_F(SwitchingTest, ThePagesThatIntroduceKeepTheirSizeBehindASearch) {
  switchTo(releaseNotes);
  switchTo(search);
  controller->handleEsc();
  defaults.set(980.0, UserDefault::webViewWidth);
  leftClick();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
}

TEST_F(SwitchingTest, AnUnknownNumberIsChat) {
  for (const int number : {99, 11, -1}) {
    switchTo(bard);
    controller->switchWebViewsClicked(number);
    EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt) << number;
    EXPECT_TRUE(defaults.isAlternateViewVisible()) << "a switch to chat, and no fall on it";
  }
  EXPECT_TRUE(hasLogged("switchWebViews click!"));
}

TEST_F(SwitchingTest, TheCurrentWebViewCanFollowTheLastVisibleOne) {
  defaults.set(rawValue(gitlab), UserDefault::lastVisibleWebView);
  controller->updateCurrentWebView();
  EXPECT_EQ(controller->currentWebView().webView, controller->gitlabWebView().webView);
  defaults.set(rawValue(search), UserDefault::lastVisibleWebView);
  controller->updateCurrentWebView();
  EXPECT_EQ(controller->currentWebView().webView, controller->gitlabWebView().webView);
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
  const auto host = controller->hostedWebView();
  controller->handleSideGroupClick(1);
  EXPECT_EQ(controller->hostedWebView(), host);
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
  openAll();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, true));
  controller->closeSideBarViews();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_F(SwitchingTest, ResettingTheSidebarsKeepsThemOpen) {
  controller->handleWindowJiraOnPage();
  int changes = 0;
  int changesOfAll = 0;
  const auto subscription = state().isJiring.subscribe([&] { ++changes; });
  const auto watched = state().subscribe([&] { ++changesOfAll; });
  controller->resetSideBarViews();
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(changesOfAll, 2) << "what isn't open isn't touched";
  EXPECT_TRUE(state().isJiring.get());
  EXPECT_FALSE(state().isBarding.get());
}

TEST_F(SwitchingTest, ChatHasTheStepAboveTheStoredZoomUntilItsHostAppliesIt) {
  const auto host = engineOf(controller->chatWebView()).pageZoom();
  EXPECT_EQ(host, 1.0);
  defaults.set(0.8, UserDefault::webViewZoom);
  // Jira's host doesn't hold chat: so chat keeps the step above.
  switchTo(jira);
  EXPECT_EQ(engineOf(controller->chatWebView()).pageZoom(), 1.0);
  EXPECT_EQ(engineOf(controller->jiraWebView()).pageZoom(), 0.8);
  defaults.set(0.33, UserDefault::webViewZoom);
  switchTo(bard);
  EXPECT_EQ(engineOf(controller->chatWebView()).pageZoom(), 0.8);
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

struct Toggle {
  WebViewSwitchType type;
  const char* name;
  void (VelkinImpl::*operation)();
  /// Its place among the flags of `openSideBars`.
  std::size_t flag;
};

class EachToggleTest : public SwitchingTest, public testing::WithParamInterface<Toggle> {
 protected:
  std::vector<bool> onlyItsOwn() const {
    std::vector<bool> open(7, false);
    open[GetParam().flag] = true;
    return open;
  }
  void toggle() { (controller->*GetParam().operation)(); }
};

TEST_P(EachToggleTest, OpensItsOwnSidebarAndClosesItAgain) {
  // Chat is the view on show at launch, and never opens beside itself.
  if (GetParam().type == chatgpt) switchTo(jira);
  toggle();
  EXPECT_EQ(openSideBars(), onlyItsOwn());
  toggle();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_P(EachToggleTest, LeavesOtherSidebarsAlone) {
  switchTo(GetParam().type == bard ? jira : bard);
  for (const auto type : {chatgpt, bard, bitbucket, gitlab, hemingway, jira, markdown}) {
    if (type != GetParam().type) controller->setSidebarsForGroup(type);
  }
  toggle();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, true));
}

TEST_P(EachToggleTest, DoesNothingWhileItsViewIsOnShow) {
  switchTo(GetParam().type);
  toggle();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
  controller->setSidebarsForGroup(GetParam().type);
  toggle();
  EXPECT_EQ(openSideBars(), onlyItsOwn());
}

TEST_P(EachToggleTest, DoesNothingWhereThereIsNoPage) {
  for (const auto type : {releaseNotes, onboarding, editUrls, search}) {
    switchTo(type);
    toggle();
    EXPECT_EQ(openSideBars(), std::vector<bool>(7, false)) << rawValue(type);
  }
}

TEST_P(EachToggleTest, DoesNothingOnReleaseNotesEvenIfAPageIsHosted) {
  defaults.set(rawValue(releaseNotes), UserDefault::lastVisibleWebView);
  toggle();
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, false));
}

TEST_P(EachToggleTest, IsSetByAGroupAsItsOwnFlagAlone) {
  controller->setSidebarsForGroup(GetParam().type);
  EXPECT_EQ(openSideBars(), onlyItsOwn());
  controller->setSidebarsForGroup(GetParam().type);
  EXPECT_EQ(openSideBars(), onlyItsOwn()) << "a group sets and doesn't toggle";
}

TEST_P(EachToggleTest, IsClosedByItsViewsComingToTheMainPlaceAndByNoOther) {
  if (GetParam().type != chatgpt) {
    // Asked from the scratchpad or Jira, so that the switch is one.
    switchTo(GetParam().type == jira ? bitbucket : jira);
    openAll();
    switchTo(GetParam().type);
  } else {
    switchTo(jira);
    openAll();
    switchTo(chatgpt);
  }
  std::vector<bool> expected(7, true);
  expected[GetParam().flag] = false;
  EXPECT_EQ(openSideBars(), expected);
  EXPECT_TRUE(defaults.isAlternateViewVisible());
}

INSTANTIATE_TEST_SUITE_P(
    Views, EachToggleTest,
    testing::Values(Toggle{bard, "bard", &VelkinImpl::handleWindowBardOnPage, 0},
                    Toggle{bitbucket, "bitbucket", &VelkinImpl::handleWindowBitBucketOnPage, 1},
                    Toggle{chatgpt, "chatgpt", &VelkinImpl::handleWindowChatOnPage, 2},
                    Toggle{gitlab, "gitlab", &VelkinImpl::handleWindowGitLabOnPage, 3},
                    Toggle{hemingway, "hemingway", &VelkinImpl::handleWindowHemingwayOnPage, 4},
                    Toggle{jira, "jira", &VelkinImpl::handleWindowJiraOnPage, 5},
                    Toggle{markdown, "markdown", &VelkinImpl::handleWindowMarkdownOnPage, 6}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(SwitchingTest, AFallOnChatDropsTheSidebarsOfBothAndKeepsTheOthers) {
  switchTo(jira);
  openAll();
  switchTo(jira);
  EXPECT_EQ(openSideBars(), (std::vector<bool>{true, true, false, true, true, false, true}));
  EXPECT_FALSE(defaults.isAlternateViewVisible());
}

TEST_F(SwitchingTest, WithoutAdditionalViewsTheScratchpadFallsBackOnChatToo) {
  switchTo(jira);
  defaults.set(false, UserDefault::hemingwayEnabled);
  openAll();
  switchTo(markdown);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_EQ(controller->currentWebView().webView, controller->chatWebView().webView);
  EXPECT_EQ(openSideBars(), (std::vector<bool>{true, true, false, true, true, true, false}));
}

TEST_F(SwitchingTest, WithoutAdditionalViewsChatComesBackFromAnotherView) {
  switchTo(jira);
  defaults.set(false, UserDefault::hemingwayEnabled);
  switchTo(chatgpt);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_FALSE(defaults.isAlternateViewVisible());
  EXPECT_EQ(controller->currentWebView().webView, controller->chatWebView().webView);
}

TEST_F(SwitchingTest, TheScratchpadLeavesTheCurrentPageAsItIs) {
  switchTo(jira);
  switchTo(markdown);
  EXPECT_EQ(controller->currentWebView().webView, controller->jiraWebView().webView);
  EXPECT_TRUE(defaults.isAlternateViewVisible());
  EXPECT_TRUE(controller->isFindableOrMarkdownView());
}

TEST_F(SwitchingTest, TheScratchpadHasItsPlaceAndThePagesKeepTheirs) {
  defaults.set(980.0, UserDefault::webViewWidth);
  switchTo(markdown);
  controller->handleWindowJiraOnPage();
  desktop.queue.drain();
  const auto& tree = platform::headlessTree(*controller->hostedWebView());
  const auto hosted = tree.all<platform::HostedContent>();
  ASSERT_EQ(hosted.size(), 3U);
  EXPECT_EQ(hosted[0]->hosted, controller->jiraWebView().webView.get());
  ASSERT_EQ(desktop.textViews.size(), 1U);
  EXPECT_EQ(hosted[1]->hosted, desktop.textViews[0]);
  EXPECT_TRUE(desktop.textViews[0]->isFirstResponder);
}

TEST_F(SwitchingTest, AScratchpadThatAKeyOpensBesideThePageTakesTheKeyboard) {
  defaults.set(980.0, UserDefault::webViewWidth);
  controller->handleWindowMarkdownOnPage();
  desktop.queue.drain();
  ASSERT_EQ(desktop.textViews.size(), 1U);
  EXPECT_TRUE(desktop.textViews[0]->isFirstResponder);
}

TEST_F(SwitchingTest, AScratchpadIsNewAtEachSwitchAndNothingOfItIsMadeUnseen) {
  switchTo(jira);
  EXPECT_TRUE(desktop.textViews.empty());
  switchTo(markdown);
  desktop.queue.drain();
  desktop.textViews[0]->setString("mine", platform::NSTextView::UndoHistory::kept);
  switchTo(jira);
  switchTo(markdown);
  desktop.queue.drain();
  EXPECT_TRUE(desktop.textViews.back()->string().starts_with("# Sample Markdown"));
}

TEST_F(SwitchingTest, TheKeyboardGoesToThePageInTheMainPlace) {
  switchTo(jira);
  EXPECT_TRUE(engineOf(controller->jiraWebView()).isFirstResponder);
  leftClick();
  engineOf(controller->jiraWebView()).isFirstResponder = false;
  leftClick();
  leftClick();
  EXPECT_TRUE(engineOf(controller->jiraWebView()).isFirstResponder);
}

TEST_F(SwitchingTest, APageBehindTheScratchpadOrTheNotesDoesntTakeTheKeyboard) {
  leftClick();
  switchTo(jira);
  engineOf(controller->jiraWebView()).isFirstResponder = false;
  switchTo(markdown);
  EXPECT_FALSE(engineOf(controller->jiraWebView()).isFirstResponder);
  leftClick();
  leftClick();
  EXPECT_FALSE(engineOf(controller->jiraWebView()).isFirstResponder);
  controller->handleWindowFindOnPage();
  controller->handleEsc();
  EXPECT_FALSE(engineOf(controller->jiraWebView()).isFirstResponder);
  switchTo(releaseNotes);
  controller->handleWindowFindOnPage();
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_FALSE(engineOf(controller->jiraWebView()).isFirstResponder);
}

TEST_F(SwitchingTest, WhereThereIsNoFindBarEscapeIsNotSwallowed) {
  for (const auto view : {releaseNotes, markdown}) {
    switchTo(view);
    if (!popover().isShown()) leftClick();
    controller->handleWindowFindOnPage();
    controller->handleEsc();
    EXPECT_FALSE(popover().isShown()) << rawValue(view);
  }
}

TEST_F(SwitchingTest, AFindBarThatIsntOnShowHoldsNoPopoverOpen) {
  controller->handleWindowFindOnPage();
  switchTo(editUrls);
  leftClick();
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_FALSE(popover().isShown());
}

TEST_F(SwitchingTest, EscapeWithNothingOpenDoesNothing) {
  const auto scripts = engineOf(controller->chatWebView()).scripts.size();
  controller->handleEsc();
  EXPECT_FALSE(state().isSearching.get());
  EXPECT_EQ(engineOf(controller->chatWebView()).scripts.size(), scripts);
  EXPECT_EQ(popover().closeCount, 0);
}

TEST_F(SwitchingTest, ReturnSubmitsChatsFormAndNoOthers) {
  auto& chat = engineOf(controller->chatWebView());
  controller->handleEnter();
  ASSERT_EQ(chat.scripts.size(), 1U);
  EXPECT_TRUE(chat.scripts[0].ends_with("submitButton.click()"));
  switchTo(jira);
  controller->handleEnter();
  EXPECT_EQ(chat.scripts.size(), 1U);
  EXPECT_TRUE(engineOf(controller->jiraWebView()).scripts.empty());
}

TEST_F(SwitchingTest, ChatThatComesBackLateLoadsItsConfiguredAddressAnew) {
  auto& chat = engineOf(controller->chatWebView());
  switchTo(jira);
  defaults.set("https://mine.test/chat", UserDefault::chatUrl);
  desktop.queue.advance(10'800);
  switchTo(chatgpt);
  ASSERT_EQ(chat.loads.size(), 2U);
  EXPECT_EQ(chat.loads[1].url.absoluteString(), "https://mine.test/chat");
  EXPECT_EQ(chat.loads[1].timeoutInterval, 60);
}

TEST_F(SwitchingTest, OnlyASwitchToChatCountsAsALookAtIt) {
  const auto launched = defaults.lastTimeChatGPTVisible();
  desktop.queue.advance(100);
  switchTo(jira);
  switchTo(jira);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_EQ(defaults.lastTimeChatGPTVisible(), launched) << "a fall on chat is no switch to it";
  switchTo(jira);
  switchTo(chatgpt);
  EXPECT_EQ(defaults.lastTimeChatGPTVisible(), launched + 100);
}

TEST_F(SwitchingTest, AFallOnChatReloadsNothing) {
  switchTo(jira);
  desktop.queue.advance(4 * 3600);
  switchTo(jira);
  EXPECT_EQ(engineOf(controller->chatWebView()).loads.size(), 1U);
}

TEST_F(SwitchingTest, EachSwitchMakesANewContainerAroundTheSamePages) {
  const auto first = controller->hostedWebView();
  switchTo(jira);
  const auto second = controller->hostedWebView();
  EXPECT_NE(first, second);
  EXPECT_EQ(popover().contentViewController(), second);
  EXPECT_EQ(second->rootView.webView->webView, controller->jiraWebView().webView);
  EXPECT_EQ(second->rootView.menuDelegate, static_cast<MenuHelperDelegate*>(controller));
  EXPECT_EQ(second->rootView.sharedState.shared(), controller->isFindingWebState());
  EXPECT_EQ(second->rootView.bardWebView().webView, controller->bardWebView().webView);
  EXPECT_EQ(second->rootView.bitBucketWebView().webView, controller->bitbucketWebView().webView);
  EXPECT_EQ(second->rootView.chatWebView().webView, controller->chatWebView().webView);
  EXPECT_EQ(second->rootView.gitLabWebView().webView, controller->gitlabWebView().webView);
  EXPECT_EQ(second->rootView.hemingwayWebView().webView, controller->hemingwayWebView().webView);
  EXPECT_EQ(second->rootView.jiraWebView().webView, controller->jiraWebView().webView);
  switchTo(releaseNotes);
  EXPECT_EQ(controller->hostedWebView(), nullptr);
  switchTo(bard);
  EXPECT_EQ(controller->hostedNotesView(), nullptr);
}

TEST_F(SwitchingTest, PagesThatAreNoneLeaveTheAlternateFlagAndTheSidebarsAlone) {
  controller->handleWindowBardOnPage();
  switchTo(jira);
  for (const auto type : {releaseNotes, onboarding, editUrls, search}) {
    switchTo(type);
    EXPECT_TRUE(defaults.isAlternateViewVisible()) << rawValue(type);
    EXPECT_TRUE(state().isBarding.get()) << rawValue(type);
    EXPECT_EQ(controller->currentWebView().webView, controller->jiraWebView().webView) << rawValue(type);
    EXPECT_EQ(defaults.lastVisibleWebView(), type);
  }
}

TEST_F(SwitchingTest, TheOnboardingsSizeIsNotStored) {
  defaults.set(980.0, UserDefault::webViewWidth);
  defaults.set(480.0, UserDefault::webViewHeight);
  leftClick();
  ASSERT_EQ(popover().contentSize(), (platform::NSSize{980, 480}));
  switchTo(onboarding);
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
  EXPECT_EQ(defaults.webViewWidth(), 980);
  EXPECT_EQ(defaults.webViewHeight(), 480);
}

TEST_F(SwitchingTest, ASwitchReopensThePopoverAtTheSizeOfTheSettings) {
  leftClick();
  defaults.set(980.0, UserDefault::webViewWidth);
  defaults.set(false, UserDefault::onboardingCompleted);
  switchTo(jira);
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{980, 600}));
}

TEST_F(SwitchingTest, ASwitchOfAClosedPopoverLeavesItClosed) {
  switchTo(jira);
  EXPECT_FALSE(popover().isShown());
  EXPECT_EQ(popover().showCount, 0);
}

TEST_F(SwitchingTest, EachZoomGivesChatTheStepBeforeIt) {
  const std::vector<std::pair<double, double>> steps = {
      {1.2, 1.45}, {1.0, 1.2}, {0.8, 1.0}, {0.55, 0.8}, {0.7, 0.8}};
  for (const auto& [stored, given] : steps) {
    defaults.set(stored, UserDefault::webViewZoom);
    switchTo(defaults.lastVisibleWebView() == jira ? bard : jira);
    EXPECT_EQ(controller->chatWebView().webView->pageZoom(), given) << stored;
  }
}

TEST_F(SwitchingTest, ASidebarTakesTheStoredZoomFromItsHost) {
  defaults.set(980.0, UserDefault::webViewWidth);
  defaults.set(0.8, UserDefault::webViewZoom);
  switchTo(jira);
  controller->handleWindowChatOnPage();
  desktop.queue.drain();
  EXPECT_EQ(controller->chatWebView().webView->pageZoom(), 0.8);
}

TEST_F(SwitchingTest, ResettingTheSidebarsTakesThemInOrderAndNotTheScratchpad) {
  openAll();
  std::string order;
  std::vector<platform::Connection> subscriptions;
  const std::vector<std::pair<platform::Published<bool>*, char>> names = {
      {&state().isBarding, 'b'},   {&state().isBitBucketing, 'k'}, {&state().isChatting, 'c'},
      {&state().isGitLabing, 'g'}, {&state().isHemingwaying, 'h'}, {&state().isJiring, 'j'},
      {&state().isMarking, 'm'}};
  subscriptions.reserve(names.size());
  for (const auto& [flag, name] : names) {
    subscriptions.push_back(flag->subscribe([&order, letter = name] { order += letter; }));
  }
  defaults.set(rawValue(search), UserDefault::lastVisibleWebView);
  controller->resetSideBarViews();
  EXPECT_EQ(order, "bbkkccgghhjj");
  EXPECT_EQ(openSideBars(), std::vector<bool>(7, true));
}

TEST_F(SwitchingTest, AGroupWhoseMainViewIsNotAllowedShowsChatAndItsSidebars) {
  switchTo(jira);
  defaults.set(false, UserDefault::hemingwayEnabled);
  defaults.setSidebarGroup({.mainView = bard, .sideBar1 = chatgpt, .sideBar2 = gitlab},
                           UserDefault::sideBarGroup1);
  defaults.set(980.0, UserDefault::webViewWidth);
  controller->handleSideGroupClick(1);
  desktop.queue.drain();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_EQ(openSideBars(), (std::vector<bool>{false, false, true, true, false, false, false}));
  const auto hosted = platform::headlessTree(*controller->hostedWebView()).all<platform::HostedContent>();
  ASSERT_EQ(hosted.size(), 2U) << "chat stands in the main place alone";
  EXPECT_EQ(hosted[0]->hosted, controller->gitlabWebView().webView.get());
  EXPECT_EQ(hosted[1]->hosted, controller->chatWebView().webView.get());
}

TEST_F(SwitchingTest, AGroupClosesSidebarsThatItDoesntName) {
  openAll();
  defaults.setSidebarGroup({.mainView = chatgpt, .sideBar1 = bard}, UserDefault::sideBarGroup4);
  controller->handleSideGroupClick(4);
  EXPECT_EQ(openSideBars(), (std::vector<bool>{true, false, false, false, false, false, false}));
}

TEST_F(SwitchingTest, EachGroupNumberHasItsOwnSlot) {
  const std::vector<std::pair<UserDefault, WebViewSwitchType>> slots = {
      {UserDefault::sideBarGroup1, bard},
      {UserDefault::sideBarGroup2, gitlab},
      {UserDefault::sideBarGroup3, hemingway},
      {UserDefault::sideBarGroup4, markdown}};
  for (const auto& [key, main] : slots) defaults.setSidebarGroup({.mainView = main}, key);
  for (int number = 1; number <= 4; ++number) {
    controller->handleSideGroupClick(number);
    EXPECT_EQ(defaults.lastVisibleWebView(), slots[static_cast<std::size_t>(number) - 1].second);
  }
}

TEST_F(SwitchingTest, AnEmptySlotKeepsTheSidebars) {
  switchTo(jira);
  controller->handleWindowBardOnPage();
  controller->handleSideGroupClick(3);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_TRUE(state().isBarding.get());
}

TEST_F(SwitchingTest, AGroupAtFullSizeAlreadyStaysThereAndKeepsTheSizeToGoBackTo) {
  defaults.set(980.0, UserDefault::webViewWidth);
  controller->handleWindowFullScreen();
  defaults.setSidebarGroup({.isFullScreen = true, .mainView = jira}, UserDefault::sideBarGroup1);
  controller->handleSideGroupClick(1);
  EXPECT_TRUE(controller->getIsInFullScreenMode());
  EXPECT_EQ(defaults.webViewFSToggleWidth(), 980);
}

TEST_F(SwitchingTest, EachKindOfViewCanBeTheCurrentOneAgain) {
  const std::vector<std::pair<WebViewSwitchType, const WebView*>> views = {
      {chatgpt, &controller->chatWebView()},        {bard, &controller->bardWebView()},
      {bitbucket, &controller->bitbucketWebView()}, {gitlab, &controller->gitlabWebView()},
      {hemingway, &controller->hemingwayWebView()}, {jira, &controller->jiraWebView()}};
  for (const auto& [type, view] : views) {
    defaults.set(rawValue(type), UserDefault::lastVisibleWebView);
    controller->updateCurrentWebView();
    EXPECT_EQ(controller->currentWebView().webView, view->webView) << rawValue(type);
    for (const auto other : {markdown, onboarding, releaseNotes, editUrls, search}) {
      defaults.set(rawValue(other), UserDefault::lastVisibleWebView);
      controller->updateCurrentWebView();
      EXPECT_EQ(controller->currentWebView().webView, view->webView);
    }
  }
}

TEST_F(SwitchingTest, OnTheScratchpadPagesHaveSidebarsWhateverIsHosted) {
  switchTo(editUrls);
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  EXPECT_FALSE(controller->isFindableView());
  EXPECT_TRUE(controller->isFindableOrMarkdownView());
  controller->handleWindowBardOnPage();
  EXPECT_EQ(openSideBars(), (std::vector<bool>{true, false, false, false, false, false, false}));
}

TEST_F(SwitchingTest, TheOnboardingIsLargeWhateverIsSet) {
  switchTo(onboarding);
  defaults.set(980.0, UserDefault::webViewWidth);
  leftClick();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
}

TEST_F(SwitchingTest, APopoverThatOpensWithItsFindBarLeavesTheKeyboardToIt) {
  controller->handleWindowFindOnPage();
  engineOf(controller->chatWebView()).isFirstResponder = false;
  leftClick();
  EXPECT_FALSE(engineOf(controller->chatWebView()).isFirstResponder);
}

}  // namespace
}  // namespace velkin
