#include "AppDelegate.h"
#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/FileUserDefaults.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "unit/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

/// A process whose settings are in a file, which outlives it.
class FatalErrorTest : public testing::Test {
 protected:
  FatalErrorTest() {
    desktop.otherUserDefaults = &file;
    platform::setDebugLogSink([](std::string_view) {});
  }
  ~FatalErrorTest() override { platform::setDebugLogSink({}); }

  std::int64_t storedNumber(std::string_view key) const {
    return platform::FileUserDefaults(path).integerForKey(key);
  }

  TemporaryFolder folder;
  std::filesystem::path path = folder.path() / "domain.plist";
  platform::FileUserDefaults file{path};
  platform::HeadlessPlatform desktop;
};

TEST_F(FatalErrorTest, WhatABatchKeepsBackIsStoredFirst) {
  EXPECT_EXIT(
      {
        const platform::NSUserDefaults::Together together(file);
        file.setObject(17, "number");
        platform::fatalError("on purpose");
      },
      testing::ExitedWithCode(platform::fatalErrorExitCode), "");
  EXPECT_EQ(storedNumber("number"), 17);
}

TEST_F(FatalErrorTest, ASwitchToMarkdownThatEndsTheProcessHasStoredItsView) {
  UserDefaultsHelper defaults(file);
  defaults.set(23, UserDefault::releaseNoteBuildVersion);
  defaults.set(true, UserDefault::onboardingCompleted);
  defaults.set(true, UserDefault::hemingwayEnabled);
  AppDelegate app;
  platform::NSApp().run(app);
  desktop.queue.drain();
  // Chat's zoom is the step above, which isn't there.
  defaults.set(1.45, UserDefault::webViewZoom);
  for (const auto& [view, stored] : {std::pair(WebViewSwitchType::jira, WebViewSwitchType::chatgpt),
                                     std::pair(WebViewSwitchType::markdown, WebViewSwitchType::markdown)}) {
    EXPECT_EXIT(app.menuBar->switchWebViews(view), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
    EXPECT_EQ(storedNumber("lastVisibleWebView"), rawValue(stored));
  }
}

}  // namespace
}  // namespace velkin
