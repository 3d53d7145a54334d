#include "Platform/Headless/HeadlessViewTree.h"
#include "VelkinImpl.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using platform::NSPopover;
using platform::NSSize;
using enum WebViewSwitchType;

class VelkinImplTest : public AppFixture {};

TEST_F(VelkinImplTest, TheStatusItemIs28WideWithA22PointTemplateImageAndAsksForBothClicks) {
  launch();
  EXPECT_EQ(statusItem().length(), 28);
  EXPECT_EQ(statusItem().statusButton.image,
            (platform::StatusImage{"velkin.diamondgear.black", {22, 22}, true}));
  EXPECT_EQ(statusItem().statusButton.sendActionOn, 4U | 16U);
}

TEST_F(VelkinImplTest, TheMenuStartsWithTheVersionAndEndsWithQuitAndEnablesNothingByItself) {
  launch();
  const auto& items = statusItem().preparedMenu->items();
  EXPECT_EQ(items.front()->title(), "1.0.0 (23)");
  EXPECT_FALSE(items.front()->isEnabled());
  EXPECT_EQ(items.back()->title(), "Quit");
  EXPECT_FALSE(statusItem().preparedMenu->autoenablesItems);
}

TEST_F(VelkinImplTest, OnlyTheCurrentWebViewHasTheControllerAsItsUIDelegate) {
  auto& controller = launch();
  EXPECT_EQ(controller.chatWebView().webView->uiDelegate, &controller);
  EXPECT_EQ(controller.jiraWebView().webView->uiDelegate, nullptr);
}

TEST_F(VelkinImplTest, ThePopoverDoesntOpenAtLaunch) {
  launch();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(VelkinImplTest, AFreshInstallShowsTheReleaseNotesAndNotesTheBuild) {
  auto& controller = launch();
  EXPECT_NE(controller.hostedNotesView(), nullptr);
  EXPECT_EQ(popover().contentViewController(), controller.hostedNotesView());
  EXPECT_EQ(defaults.lastVisibleWebView(), releaseNotes);
  EXPECT_EQ(defaults.releaseNoteBuildVersion(), 23);
}

TEST_F(VelkinImplTest, ARelaunchOfTheSameBuildShowsChatWhateverWasOnShow) {
  settleIn();
  defaults.set(rawValue(bard), UserDefault::lastVisibleWebView);
  auto& controller = launch();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_NE(controller.hostedWebView(), nullptr);
  EXPECT_EQ(engineOf(controller.chatWebView()).loads.size(), 1U);
}

TEST_F(VelkinImplTest, ARelaunchOnChatShowsChatAlthoughTheSwitchIsOtherwiseNone) {
  settleIn();
  auto& controller = launch();
  EXPECT_NE(controller.hostedWebView(), nullptr);
}

TEST_F(VelkinImplTest, AnUpdateShowsTheReleaseNotesOnce) {
  settleIn();
  defaults.set(22, UserDefault::releaseNoteBuildVersion);
  EXPECT_NE(launch().hostedNotesView(), nullptr);
  app.reset();
  EXPECT_EQ(launch().hostedNotesView(), nullptr);
}

TEST_F(VelkinImplTest, ABundleVersionThatIsNoNumberCountsAsBuildZero) {
  desktop.bundle.version = "23b";
  launch();
  // The stored build is 0 where nothing was stored, so the notes don't show.
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_F(VelkinImplTest, TheToolbarFlagComesFromTheSettings) {
  defaults.set(false, UserDefault::showToolBar);
  EXPECT_FALSE(launch().isFindingWebState()->showToolbar.get());
}

TEST_F(VelkinImplTest, ALeftClickOpensAndAnotherOneCloses) {
  settleIn();
  launch();
  leftClick();
  EXPECT_TRUE(popover().isShown());
  EXPECT_TRUE(hasLogged("Left click!"));
  leftClick();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(VelkinImplTest, BeforeTheOnboardingIsDoneThePopoverIsLargeWhateverIsSet) {
  defaults.set(340.0, UserDefault::webViewWidth);
  defaults.set(23, UserDefault::releaseNoteBuildVersion);
  launch();
  leftClick();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 600}));
}

TEST_F(VelkinImplTest, TheReleaseNotesAreLargeWhateverIsSet) {
  settleIn();
  defaults.set(22, UserDefault::releaseNoteBuildVersion);
  defaults.set(340.0, UserDefault::webViewWidth);
  launch();
  leftClick();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 600}));
}

TEST_F(VelkinImplTest, APageHasTheSizeOfTheSettings) {
  settleIn();
  defaults.set(1600.0, UserDefault::webViewWidth);
  defaults.set(740.0, UserDefault::webViewHeight);
  launch();
  leftClick();
  EXPECT_EQ(popover().contentSize(), (NSSize{1420, 980}));
}

TEST_F(VelkinImplTest, AStoredSizeOutsideTheScaleIsTheMediumOne) {
  settleIn();
  defaults.set(-5.0, UserDefault::webViewWidth);
  defaults.set(1e9, UserDefault::webViewHeight);
  launch();
  leftClick();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 600}));
}

TEST_F(VelkinImplTest, AClickOutsideClosesUnlessTheMenuIsSticky) {
  settleIn();
  launch();
  leftClick();
  popover().clickOutside();
  EXPECT_FALSE(popover().isShown());
  menuItem("Make Menu Sticky")->action();
  leftClick();
  popover().clickOutside();
  EXPECT_TRUE(popover().isShown());
}

TEST_F(VelkinImplTest, TheStickyItemsCheckMarkIsTheStoredSettings) {
  settleIn();
  defaults.set(true, UserDefault::stickyMenu);
  launch();
  EXPECT_EQ(menuItem("Make Menu Sticky")->state(), platform::NSMenuItem::State::on);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  menuItem("Make Menu Sticky")->action();
  EXPECT_FALSE(defaults.stickyMenu());
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
}

TEST_F(VelkinImplTest, ARightClickPutsTheMenuUpAndHoldsAnOpenPopover) {
  settleIn();
  auto& controller = launch();
  leftClick();
  rightClick();
  EXPECT_TRUE(hasLogged("Right click!"));
  EXPECT_EQ(statusItem().poppedUp.size(), 1U);
  EXPECT_TRUE(controller.isShowingPopUpMenu());
  popover().clickOutside();
  EXPECT_TRUE(popover().isShown());
}

TEST_F(VelkinImplTest, ARightClickWithAClosedPopoverLeavesItTransient) {
  settleIn();
  launch();
  rightClick();
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
}

TEST_F(VelkinImplTest, ARightClickWhileTheMenuIsUpClearsTheItemsMenu) {
  auto& controller = launch();
  rightClick();
  controller.menuBarItem().menu = controller.menu();
  rightClick();
  EXPECT_EQ(controller.menuBarItem().menu, nullptr);
  EXPECT_FALSE(controller.isShowingPopUpMenu());
  EXPECT_TRUE(controller.isDismissingPopUpMenu());
  EXPECT_EQ(statusItem().poppedUp.size(), 1U);
}

TEST_F(VelkinImplTest, TheMenusClosingResetsBothFlags) {
  auto& controller = launch();
  rightClick();
  statusItem().closeMenu(nullptr);
  EXPECT_FALSE(controller.isShowingPopUpMenu());
  EXPECT_FALSE(controller.isDismissingPopUpMenu());
}

TEST_F(VelkinImplTest, BehindTheMenuThePopoverClosesAsStickySaysAgain) {
  settleIn();
  auto& controller = launch();
  leftClick();
  rightClick();
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  statusItem().closeMenu(nullptr);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
  // By the menu's key.
  controller.handlePopOverBehaviorUpdate(true);
  controller.preferencesClicked();
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  statusItem().closeMenu(nullptr);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
  controller.stickyClicked();
  rightClick();
  statusItem().closeMenu(nullptr);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
}

TEST_F(VelkinImplTest, APageThatItsDeadProcessBroughtBackIsANewOneForTheScripts) {
  settleIn();
  auto& controller = launch();
  auto& page = engineOf(controller.chatWebView());
  const auto submit = [&] {
    controller.handleEnter();
    desktop.queue.drain();
    return page.scripts.back();
  };
  const auto full = submit();
  EXPECT_EQ(submit(), "submitButton.click()");
  ASSERT_NE(page.uiDelegate, nullptr);
  page.uiDelegate->didReload(page);
  EXPECT_EQ(submit(), full);
}

TEST_F(VelkinImplTest, TheRoutersValueForTheBehaviourCountsAsFalseIfAbsent) {
  settleIn();
  auto& controller = launch();
  leftClick();
  controller.handlePopOverBehaviorUpdate(true);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::applicationDefined);
  controller.handlePopOverBehaviorUpdate(std::nullopt);
  EXPECT_EQ(popover().behavior, NSPopover::Behavior::transient);
}

TEST_F(VelkinImplTest, EscapeClosesThePopover) {
  settleIn();
  auto& controller = launch();
  leftClick();
  controller.handleEsc();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(VelkinImplTest, QuitEndsTheProcessWithZero) {
  launch();
  EXPECT_THROW(
      {
        try {
          menuItem("Quit")->action();
        } catch (const platform::ExitCalled& exit) {
          EXPECT_EQ(exit.code, 0);
          throw;
        }
      },
      platform::ExitCalled);
}

TEST_F(VelkinImplTest, ReloadGoesThroughTheMainQueueToTheCurrentPage) {
  settleIn();
  auto& controller = launch();
  menuItem("Reload")->action();
  EXPECT_EQ(engineOf(controller.chatWebView()).reloads, 0);
  desktop.queue.drain();
  EXPECT_EQ(engineOf(controller.chatWebView()).reloads, 1);
}

TEST_F(VelkinImplTest, OpenInBrowserOpensThePagesAddressAndNothingWithoutOne) {
  auto& controller = launch();
  menuItem("Open In Browser")->action();
  EXPECT_TRUE(desktop.workspace.opened.empty());
  controller.currentWebView().webView->load(platform::URLRequest{*platform::URL::parse("https://a.test/x")});
  menuItem("Open In Browser")->action();
  ASSERT_EQ(desktop.workspace.opened.size(), 1U);
  EXPECT_EQ(desktop.workspace.opened[0].absoluteString(), "https://a.test/x");
}

TEST_F(VelkinImplTest, TheDoneOfTheReleaseNotesGoesToChat) {
  defaults.set(true, UserDefault::onboardingCompleted);
  auto& controller = launch();
  auto& tree = platform::headlessTree(*controller.hostedNotesView());
  tree.control("Done")->press();
  desktop.queue.drain();
  EXPECT_EQ(controller.hostedNotesView(), nullptr);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_EQ(engineOf(controller.chatWebView()).loads.size(), 1U);
}

TEST_F(VelkinImplTest, ASwitchReopensAnOpenPopover) {
  auto& controller = launch();
  leftClick();
  controller.didClickReleaseNotesDone();
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(popover().closeCount, 1);
  EXPECT_EQ(popover().showCount, 2);
}

TEST_F(VelkinImplTest, ChatOnChatIsNoSwitchEvenAfterThreeHours) {
  settleIn();
  auto& controller = launch();
  leftClick();
  const auto host = controller.hostedWebView();
  desktop.queue.advance(4 * 3600);
  controller.switchWebViews(chatgpt);
  EXPECT_EQ(controller.hostedWebView(), host);
  EXPECT_EQ(engineOf(controller.chatWebView()).loads.size(), 1U);
}

TEST_F(VelkinImplTest, ChatReloadsWhenItComesBackAfterThreeHours) {
  settleIn();
  auto& controller = launch();
  leftClick();
  auto& chat = engineOf(controller.chatWebView());
  controller.switchWebViews(releaseNotes);
  desktop.queue.advance(10799);
  controller.switchWebViews(chatgpt);
  desktop.queue.drain();
  EXPECT_EQ(chat.loads.size(), 1U);
  controller.switchWebViews(releaseNotes);
  desktop.queue.advance(10800);
  controller.switchWebViews(chatgpt);
  desktop.queue.drain();
  EXPECT_EQ(chat.loads.size(), 2U);
}

TEST_F(VelkinImplTest, WithoutAdditionalViewsEveryWebViewFallsBackOnChat) {
  settleIn();
  auto& controller = launch();
  controller.switchWebViews(bard);
  desktop.queue.drain();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_FALSE(defaults.isAlternateViewVisible());
  EXPECT_EQ(controller.currentWebView().webView, controller.chatWebView().webView);
  EXPECT_TRUE(engineOf(controller.bardWebView()).loads.empty());
}

TEST_F(VelkinImplTest, WithAdditionalViewsAViewTakesTheMainPlaceAndAskingAgainGoesBackToChat) {
  settleIn();
  defaults.set(true, UserDefault::hemingwayEnabled);
  auto& controller = launch();
  controller.switchWebViews(bard);
  desktop.queue.drain();
  EXPECT_EQ(defaults.lastVisibleWebView(), bard);
  EXPECT_TRUE(defaults.isAlternateViewVisible());
  EXPECT_EQ(engineOf(controller.bardWebView()).loads.size(), 1U);
  controller.switchWebViews(bard);
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_F(VelkinImplTest, APageLoadsOnceThroughManySwitches) {
  settleIn();
  defaults.set(true, UserDefault::hemingwayEnabled);
  auto& controller = launch();
  for (int i = 0; i < 100; ++i) {
    controller.switchWebViews(jira);
    desktop.queue.drain();
    controller.switchWebViews(chatgpt);
    desktop.queue.drain();
  }
  // The first switch loads each page; chat also came back "after three hours" at the launch, where it never
  // was.
  EXPECT_EQ(engineOf(controller.jiraWebView()).loads.size(), 1U);
  EXPECT_EQ(engineOf(controller.chatWebView()).loads.size(), 1U);
}

}  // namespace
}  // namespace velkin
