#include "AppDelegate.h"
#include "Platform/FatalError.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using AppDelegateTest = AppFixture;
using Posted = std::vector<std::pair<std::string, std::string>>;

TEST_F(AppDelegateTest, TellsARunningLauncherOnceThatItMayEnd) {
  desktop.workspace.running = {{"com.tarnvale.VelkinLauncher"}, {"com.tarnvale.Other"}};
  launch();
  EXPECT_EQ(desktop.distributedNotifications.posted, (Posted{{"killLauncher", "com.tarnvale.Velkin"}}));
}

TEST_F(AppDelegateTest, TellsNobodyWhereNoLauncherRuns) {
  desktop.workspace.running = {{"com.tarnvale.Velkin"}};
  launch();
  EXPECT_TRUE(desktop.distributedNotifications.posted.empty());
}

TEST_F(AppDelegateTest, AMissingBundleIdentifierIsFatalWhereALauncherRuns) {
  desktop.workspace.running = {{"com.tarnvale.VelkinLauncher"}};
  desktop.bundle.bundleIdentifier.reset();
  EXPECT_EXIT(launch(), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
}

TEST_F(AppDelegateTest, TheStartAtLoginIsOneCallForTheHelper) {
  auto& controller = launch();
  controller.updateStartAtLoginBehavior(true);
  EXPECT_EQ(log.back(), "Update login prefs here!");
  desktop.services.canSetLoginItems = false;
  controller.didClickStartAtLogin(false);
  EXPECT_EQ(desktop.services.loginItemCalls,
            (std::vector<std::pair<std::string, bool>>{{"com.tarnvale.VelkinLauncher", true},
                                                       {"com.tarnvale.VelkinLauncher", false}}));
  EXPECT_FALSE(defaults.startAtLogin()) << "whoever offers the choice stores it";
}

TEST_F(AppDelegateTest, DarkModeIsWhatTheDesktopHasAtLaunchWhateverWasStored) {
  defaults.set(false, UserDefault::isDarkMode);
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  launch();
  EXPECT_TRUE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, TheVibrantDarkLookIsDarkToo) {
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameVibrantDark};
  launch();
  EXPECT_TRUE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, ALightDesktopStoresFalse) {
  defaults.set(true, UserDefault::isDarkMode);
  launch();
  EXPECT_FALSE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, AMissingAppearanceIsFatal) {
  desktop.appearance.reset();
  EXPECT_EXIT(launch(), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
}

TEST_F(AppDelegateTest, AThemeChangedWhileRunningChangesNothingStored) {
  launch();
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  platform::NSDistributedNotificationCenter::defaultCenter().post(platform::interfaceThemeChangedNotification,
                                                                  "");
  desktop.queue.drain();
  EXPECT_FALSE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, ADesktopThatSpeaksLateCorrectsTheValueOfTheLaunch) {
  launch();
  EXPECT_FALSE(defaults.isDarkMode());
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  platform::NSDistributedNotificationCenter::defaultCenter().post(platform::appearanceFirstToldNotification,
                                                                  "");
  desktop.queue.drain();
  EXPECT_TRUE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, TheHandlerForAThemeTurnsTheStoredValueRoundAndLogsTheOldOne) {
  launch();
  app->interfaceModeChanged();
  EXPECT_TRUE(defaults.isDarkMode());
  EXPECT_TRUE(hasLogged("Q$: AppDelegate.interfaceModeChanged(sender:) isDarkMode=false"));
  app->interfaceModeChanged();
  EXPECT_FALSE(defaults.isDarkMode());
}

TEST_F(AppDelegateTest, ThePopoverGetsTheStoredSize) {
  settleIn();
  defaults.set(980.0, UserDefault::webViewWidth);
  defaults.set(480.0, UserDefault::webViewHeight);
  launch();
  EXPECT_EQ(popover().contentSize(), (platform::NSSize{980, 480}));
}

TEST_F(AppDelegateTest, ALaunchMakesTheSixWebViewsOfTheUsedFamilyAndNoOther) {
  settleIn();
  launch();
  EXPECT_EQ(desktop.webViews.size(), 6U);
}

TEST_F(AppDelegateTest, EachMemberIsMadeOnce) {
  app = std::make_unique<AppDelegate>();
  EXPECT_EQ(app->jiraWebView().webView, app->jiraWebView().webView);
  EXPECT_EQ(app->bardWKWebView(), app->bardWKWebView());
  EXPECT_NE(app->bardWKWebView(), app->bardWebView().webView);
  EXPECT_EQ(app->chatWrappedWebView().webView, app->chatWrappedWebView().webView);
}

TEST_F(AppDelegateTest, SizesAreReadOnce) {
  app = std::make_unique<AppDelegate>();
  defaults.set(1600.0, UserDefault::webViewWidth);
  EXPECT_EQ(app->width(), 1420);
  defaults.set(340.0, UserDefault::webViewWidth);
  EXPECT_EQ(app->width(), 1420);
  EXPECT_EQ(app->height(), 600);
}

TEST_F(AppDelegateTest, AStartAgainTogglesThePopover) {
  settleIn();
  launch();
  app->applicationDidReopen();
  EXPECT_TRUE(popover().isShown());
  app->applicationDidReopen();
  EXPECT_FALSE(popover().isShown());
}

TEST_F(AppDelegateTest, TheDesktopMayToggleThePopoverAndTheSearchBar) {
  settleIn();
  auto& controller = launch();
  app->applicationPerformAction("toggle-popover", "");
  EXPECT_TRUE(popover().isShown());
  app->applicationPerformAction("toggle-popover", "");
  EXPECT_FALSE(popover().isShown());
  app->applicationPerformAction("toggle-search", "");
  EXPECT_NE(controller.searchBarHostingController(), nullptr);
  app->applicationPerformAction("toggle-search", "");
  EXPECT_EQ(controller.searchBarHostingController(), nullptr);
}

TEST_F(AppDelegateTest, TheDesktopMayAskForAViewByItsName) {
  settleIn();
  defaults.set(true, UserDefault::hemingwayEnabled);
  launch();
  app->applicationPerformAction("show-view", "jira");
  EXPECT_TRUE(popover().isShown());
  EXPECT_EQ(defaults.lastVisibleWebView(), WebViewSwitchType::jira);
}

TEST_F(AppDelegateTest, WhatTheDesktopAsksForInVainIsLoggedAndIgnored) {
  settleIn();
  launch();
  for (const auto& [name, argument] : {std::pair{"show-view", "Jira"}, std::pair{"show-view", ""},
                                       std::pair{"show-view", "6"}, std::pair{"dance", "jira"}}) {
    log.clear();
    app->applicationPerformAction(name, argument);
    EXPECT_TRUE(hasLogged(std::string("There is nothing like this: ") + name + " " + argument));
    EXPECT_FALSE(popover().isShown());
  }
}

TEST_F(AppDelegateTest, NothingIsAskedOfAProgramThatHasNotLaunched) {
  app = std::make_unique<AppDelegate>();
  app->applicationPerformAction("toggle-popover", "");
  EXPECT_FALSE(popover().isShown());
}

TEST_F(AppDelegateTest, AnAddressThatIsNoneIsFatal) {
  settleIn();
  defaults.set("not a url", UserDefault::chatUrl);
  EXPECT_EXIT(
      {
        platform::setDebugLogSink({});
        launch();
      },
      testing::ExitedWithCode(platform::fatalErrorExitCode),
      "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(AppDelegateTest, TheStartAfterAFatalErrorAndOnlyThatOnePutsHarmfulValuesBack) {
  settleIn();
  defaults.set("not a url", UserDefault::chatUrl);
  desktop.lastFatalError = "x";
  launch();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl, "default"), "default");
  EXPECT_FALSE(desktop.lastFatalError.has_value());
}

}  // namespace
}  // namespace velkin
