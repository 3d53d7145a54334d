#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/RecorderCocoa.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "unit/AppFixture.h"

#include <gmock/gmock.h>

namespace velkin {
namespace {

using enum WebViewSwitchType;

constexpr auto popUpKeys = platform::HotKeyCombination{17, 0x300};
constexpr auto searchKeys = platform::HotKeyCombination{15, 0x300};

class PagesTest : public AppFixture {
 protected:
  platform::HeadlessHostingView& shown() {
    return platform::headlessTree(*popover().contentViewController());
  }
};

TEST_F(PagesTest, AFreshInstallGoesFromTheNotesOverTheOnboardingToChat) {
  auto& controller = launch();
  leftClick();
  EXPECT_EQ(defaults.lastVisibleWebView(), releaseNotes);
  controller.didClickReleaseNotesDone();
  desktop.queue.drain();
  EXPECT_EQ(defaults.lastVisibleWebView(), onboarding);
  EXPECT_TRUE(popover().isShown()) << "whoever is led in isn't left before a closed door";
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
  EXPECT_FALSE(defaults.onboardingCompleted());
  EXPECT_TRUE(shown().showsText("Welcome to Velkin"));
  defaults.set(980.0, UserDefault::webViewWidth);
  controller.didCompleteOnboarding();
  desktop.queue.drain();
  EXPECT_TRUE(hasLogged("didCompleteOnboarding()"));
  EXPECT_TRUE(defaults.onboardingCompleted());
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{980, 600}));
}

TEST_F(PagesTest, NothingButItsEndCompletesTheOnboarding) {
  auto& controller = launch();
  leftClick();
  controller.didClickReleaseNotesDone();
  controller.didClickReleaseNotesButton();
  controller.didClickReleaseNotesDone();
  controller.didClickEditUrlsButton();
  controller.didClickEasterEggUrlEditingDone();
  controller.switchWebViews(bard);
  EXPECT_FALSE(defaults.onboardingCompleted());
}

TEST_F(PagesTest, WhoHasCompletedItGoesFromTheNotesToChat) {
  defaults.set(true, UserDefault::onboardingCompleted);
  auto& controller = launch();
  controller.didClickReleaseNotesDone();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_F(PagesTest, TheEndOfTheOnboardingLeadsToNotesThatWereNotReadYet) {
  settleIn();
  auto& controller = launch();
  defaults.set(22, UserDefault::releaseNoteBuildVersion);
  controller.switchWebViews(onboarding);
  controller.didCompleteOnboarding();
  EXPECT_EQ(defaults.lastVisibleWebView(), releaseNotes);
  EXPECT_EQ(defaults.releaseNoteBuildVersion(), 23);
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{600, 600}));
}

TEST_F(PagesTest, AboutsButtonsLeadToTheirPagesInThePopover) {
  settleIn();
  auto& controller = launch();
  const auto leadsTo = [&](void (VelkinImpl::*click)(), WebViewSwitchType page) {
    (controller.*click)();
    desktop.queue.drain();
    EXPECT_EQ(defaults.lastVisibleWebView(), page);
    EXPECT_TRUE(popover().isShown());
  };
  leadsTo(&VelkinImpl::didClickReleaseNotesButton, releaseNotes);
  leadsTo(&VelkinImpl::didClickOnboardingButton, onboarding);
  leadsTo(&VelkinImpl::didClickEditUrlsButton, editUrls);
  controller.didClickEasterEggUrlEditingDone();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
}

TEST_F(PagesTest, TurningTheAdditionalViewsLeadsBackToChatAndTakesTheirSidebarsAway) {
  settleIn();
  defaults.set(true, UserDefault::hemingwayEnabled);
  auto& controller = launch();
  controller.switchWebViews(jira);
  controller.setSidebarsForGroup(bard);
  defaults.set(false, UserDefault::hemingwayEnabled);
  controller.didEnableDisableEasterEgg();
  EXPECT_EQ(defaults.lastVisibleWebView(), chatgpt);
  EXPECT_FALSE(controller.isFindingWebState()->hasSidebars());
}

TEST_F(PagesTest, ANewUserIsToldOnceWhereTheProgramIsAndItsKeys) {
  launch();
  EXPECT_TRUE(desktop.workspace.delivered.empty()) << "the desktop hasn't settled yet";
  desktop.queue.advance(5);
  ASSERT_EQ(desktop.workspace.delivered.size(), 1U);
  const auto notice = desktop.workspace.delivered[0];
  EXPECT_EQ(notice.title, "Velkin is in the tray.");
  EXPECT_EQ(notice.informativeText, "Ctrl+Shift+T opens it, Ctrl+Shift+R asks a question.");
  notice.action();
  EXPECT_TRUE(popover().isShown());
  notice.action();
  EXPECT_TRUE(popover().isShown()) << "the notice opens, it doesn't close";
  app.reset();
  notice.action();
  launch();
  desktop.queue.advance(5);
  EXPECT_EQ(desktop.workspace.delivered.size(), 1U);
}

TEST_F(PagesTest, TheNoticeNamesOnlyKeysThatWork) {
  desktop.keyboard.heldByOthers.insert(popUpKeys);
  launch();
  desktop.queue.advance(5);
  ASSERT_EQ(desktop.workspace.delivered.size(), 2U);
  EXPECT_EQ(desktop.workspace.delivered[0].informativeText, "Ctrl+Shift+R asks a question.");
  EXPECT_EQ(desktop.workspace.delivered[1].informativeText,
            "Another program uses Ctrl+Shift+T. Velkin's menu has other keys under Shortcuts.");
  desktop.workspace.delivered[1].action();
  EXPECT_TRUE(app->menuBar->shortcutsPanel().isVisible());
}

TEST_F(PagesTest, ALostShortcutIsToldOnceAndNotAtEachStart) {
  settleIn();
  const auto start = [this] {
    app.reset();
    desktop.workspace.delivered.clear();
    launch();
    desktop.queue.advance(5);
    return desktop.workspace.delivered.size();
  };
  EXPECT_EQ(start(), 0U);
  desktop.keyboard.heldByOthers.insert(popUpKeys);
  EXPECT_EQ(start(), 1U);
  EXPECT_EQ(start(), 0U);
  // Another one is news, and so is the same one after it was there in between.
  desktop.keyboard.heldByOthers.insert(searchKeys);
  EXPECT_EQ(start(), 1U);
  EXPECT_THAT(desktop.workspace.delivered[0].informativeText,
              testing::HasSubstr("Ctrl+Shift+T and Ctrl+Shift+R"));
  EXPECT_EQ(start(), 0U);
  desktop.keyboard.heldByOthers.clear();
  EXPECT_EQ(start(), 0U);
  desktop.keyboard.heldByOthers.insert(popUpKeys);
  EXPECT_EQ(start(), 1U);
}

TEST_F(PagesTest, WhereTheDesktopGrantsTheKeysTheNoticeHasItsWords) {
  desktop.keyboard.grantedTriggers.emplace();
  (*desktop.keyboard.grantedTriggers)["popUpShortcut"] = "Meta+K";
  launch();
  desktop.queue.advance(5);
  ASSERT_EQ(desktop.workspace.delivered.size(), 1U);
  EXPECT_EQ(desktop.workspace.delivered[0].informativeText, "Meta+K opens it.");
}

TEST_F(PagesTest, SomebodyWhoIsAtHomeIsToldNothing) {
  settleIn();
  launch();
  desktop.queue.advance(5);
  EXPECT_TRUE(desktop.workspace.delivered.empty());
}

TEST_F(PagesTest, APanelThatClosesWhileItRecordsLeavesNothingPaused) {
  settleIn();
  auto& controller = launch();
  controller.shortcutsClicked();
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*controller.shortcutsPanel().contentViewController());
  auto* recorder = tree.control("PopUp: Ctrl+Shift+T, change");
  ASSERT_NE(recorder, nullptr);
  recorder->press();
  EXPECT_TRUE(KeyboardShortcuts::isPaused());
  controller.shortcutsPanel().close();
  EXPECT_FALSE(KeyboardShortcuts::isPaused());
  EXPECT_TRUE(desktop.keyboard.isRegistered(popUpKeys));
}

TEST_F(PagesTest, EscapeWhileRecordingLeavesThePopoverOpen) {
  settleIn();
  auto& controller = launch();
  leftClick();
  controller.shortcutsClicked();
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*controller.shortcutsPanel().contentViewController());
  tree.control("PopUp: Ctrl+Shift+T, change")->press();
  const platform::NSEvent escape{
      .type = platform::NSEvent::EventType::keyDown, .keyCode = 0x35, .charactersIgnoringModifiers = "\x1b"};
  EXPECT_FALSE(platform::NSApp().filterByMonitors(escape));
  EXPECT_TRUE(popover().isShown());
  platform::NSApp().filterByMonitors(escape);
  EXPECT_FALSE(popover().isShown());
}

}  // namespace
}  // namespace velkin
