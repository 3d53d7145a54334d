#include "Controller/SearchPanel.h"
#include "Controller/Sidebars.h"
#include "Controller/StatusItem.h"
#include "Controller/ViewSwitcher.h"
#include "Controller/WindowGeometry.h"
#include "unit/Controller/RoomFixture.h"

namespace velkin {
namespace {

using enum WebViewSwitchType;

class ViewSwitcherTest : public RoomFixture {
 protected:
  WebViewSwitchType last() const { return defaults.lastVisibleWebView(); }
  bool isOpen(WebViewSwitchType view) const { return content.sharedState->sidebarFlag(view)->get(); }
  /// A user with the additional views, on the chat page.
  void settleIn() {
    defaults.set(true, UserDefault::hemingwayEnabled);
    defaults.set(true, UserDefault::onboardingCompleted);
    defaults.set(std::int64_t{23}, UserDefault::releaseNoteBuildVersion);
    content.isInitialLaunch = true;
    switcher.showFirst();
    content.isInitialLaunch = false;
  }

  MenuListener listener;
  Sidebars sidebars{content};
  WindowGeometry geometry{content, sidebars};
  StatusItem status{content, listener, listener};
  SearchPanel searchPanel{views};
  ViewSwitcher switcher{{content, views, sidebars, geometry, status, searchPanel}};
};

TEST_F(ViewSwitcherTest, ANewBuildBeginsWithItsNotesOnce) {
  content.isInitialLaunch = true;
  switcher.showFirst();
  EXPECT_EQ(last(), releaseNotes);
  EXPECT_NE(content.hostedNotesView, nullptr);
  EXPECT_EQ(defaults.releaseNoteBuildVersion(), 23);
  switcher.showFirst();
  EXPECT_EQ(last(), chatgpt);
  EXPECT_EQ(content.hostedNotesView, nullptr);
  EXPECT_NE(content.hostedWebView, nullptr);
}

TEST_F(ViewSwitcherTest, AViewTakesTheMainPlaceAndLeavesItsSidebar) {
  settleIn();
  sidebars.open(jira);
  switcher.switchTo(jira);
  EXPECT_EQ(last(), jira);
  EXPECT_EQ(content.view, jira);
  EXPECT_EQ(content.currentWebView.webView, content.pages[jira].webView);
  EXPECT_FALSE(isOpen(jira));
  EXPECT_EQ(content.popover->contentViewController(), content.hostedWebView);
}

TEST_F(ViewSwitcherTest, TheSameViewAgainFallsBackOnChat) {
  settleIn();
  switcher.switchTo(gitlab);
  switcher.switchTo(gitlab);
  EXPECT_EQ(last(), chatgpt);
  EXPECT_EQ(content.currentWebView.webView, content.pages[chatgpt].webView);
}

TEST_F(ViewSwitcherTest, ChatOnChatChangesNothing) {
  settleIn();
  const auto host = content.hostedWebView;
  switcher.switchTo(chatgpt);
  EXPECT_EQ(content.hostedWebView, host);
}

TEST_F(ViewSwitcherTest, WithoutTheAdditionalViewsThereIsChatAlone) {
  settleIn();
  defaults.set(false, UserDefault::hemingwayEnabled);
  switcher.switchTo(bard);
  EXPECT_EQ(last(), chatgpt);
}

TEST_F(ViewSwitcherTest, ANumberThatIsNoViewMeansChat) {
  settleIn();
  switcher.switchToNumber(rawValue(bard));
  EXPECT_EQ(last(), bard);
  switcher.switchToNumber(99);
  EXPECT_EQ(last(), chatgpt);
}

TEST_F(ViewSwitcherTest, AnOpenPopoverIsOpenAgainAfterASwitch) {
  settleIn();
  switcher.switchTo(jira);
  EXPECT_FALSE(content.popover->isShown());
  status.showPopover(false);
  switcher.switchTo(bard);
  EXPECT_TRUE(content.popover->isShown());
}

TEST_F(ViewSwitcherTest, TheSearchBarLeavesTheContentAsItIs) {
  settleIn();
  switcher.switchTo(jira);
  const auto host = content.hostedWebView;
  switcher.switchTo(search);
  EXPECT_EQ(last(), search);
  EXPECT_EQ(content.hostedWebView, host);
  EXPECT_EQ(content.view, jira);
  ASSERT_NE(searchPanel.panel(), nullptr);
}

TEST_F(ViewSwitcherTest, WithoutAScreenASearchIsNotNoted) {
  settleIn();
  switcher.switchTo(jira);
  desktop.attachedScreens.clear();
  switcher.switchTo(search);
  EXPECT_EQ(last(), jira);
}

TEST_F(ViewSwitcherTest, TheSearchKeyOpensTheBarAndEscapesFromAnOpenOne) {
  settleIn();
  int escapes = 0;
  switcher.toggleSearchBar([&] { ++escapes; });
  EXPECT_TRUE(searchPanel.isSearchBarOpen);
  EXPECT_EQ(escapes, 0);
  switcher.toggleSearchBar([&] { ++escapes; });
  EXPECT_FALSE(searchPanel.isSearchBarOpen);
  EXPECT_EQ(escapes, 1);
}

TEST_F(ViewSwitcherTest, ToBringAViewUpOpensThePopoverAndSwitchesNothingThatIsThere) {
  settleIn();
  switcher.bringUp(jira);
  EXPECT_TRUE(content.popover->isShown());
  const auto host = content.hostedWebView;
  switcher.bringUp(jira);
  EXPECT_EQ(last(), jira);
  EXPECT_EQ(content.hostedWebView, host);
}

TEST_F(ViewSwitcherTest, AGroupRecallsItsViewAndItsSidebars) {
  settleIn();
  sidebars.open(bard);
  defaults.setSidebarGroup({.isFullScreen = true, .mainView = jira, .sideBar1 = gitlab, .sideBar2 = chatgpt},
                           UserDefault::sideBarGroup2);
  switcher.showGroup(2);
  EXPECT_EQ(last(), jira);
  EXPECT_TRUE(isOpen(gitlab));
  EXPECT_TRUE(isOpen(chatgpt));
  EXPECT_FALSE(isOpen(bard));
  EXPECT_TRUE(geometry.isFullScreen());
}

TEST_F(ViewSwitcherTest, ANumberWithoutAGroupMeansChat) {
  settleIn();
  switcher.switchTo(jira);
  switcher.showGroup(5);
  EXPECT_EQ(last(), chatgpt);
}

TEST_F(ViewSwitcherTest, BehindTheNotesComesTheOnboardingUntilItIsDone) {
  switcher.showFirst();
  status.showPopover(true);
  switcher.releaseNotesAreRead();
  EXPECT_EQ(last(), onboarding);
  EXPECT_EQ(content.hostedNotesView, nullptr);
  EXPECT_TRUE(content.popover->isShown());
  switcher.onboardingIsDone();
  EXPECT_TRUE(defaults.onboardingCompleted());
  EXPECT_EQ(last(), chatgpt);
  switcher.switchTo(releaseNotes);
  switcher.releaseNotesAreRead();
  EXPECT_EQ(last(), chatgpt);
}

TEST_F(ViewSwitcherTest, BackToChatWithoutAdditionalViewsClosesTheirSidebars) {
  settleIn();
  switcher.switchTo(editUrls);
  sidebars.open(bard);
  switcher.backToChat();
  EXPECT_TRUE(isOpen(bard));
  switcher.switchTo(editUrls);
  defaults.set(false, UserDefault::hemingwayEnabled);
  switcher.backToChat();
  EXPECT_FALSE(isOpen(bard));
  EXPECT_EQ(last(), chatgpt);
}

TEST_F(ViewSwitcherTest, TheLastVisiblePageIsTheCurrentOneAndOtherViewsLeaveIt) {
  settleIn();
  defaults.set(rawValue(gitlab), UserDefault::lastVisibleWebView);
  switcher.updateCurrentWebView();
  EXPECT_EQ(content.currentWebView.webView, content.pages[gitlab].webView);
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  switcher.updateCurrentWebView();
  EXPECT_EQ(content.currentWebView.webView, content.pages[gitlab].webView);
}

}  // namespace
}  // namespace velkin
