#pragma once

#include "AppDelegate.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/QKKeyboardShortcutHelper.h"
#include "MenuHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSHostingController.h"
#include "ReleaseNotes/ReleaseNotesUIView.h"
#include "UserData/SharedState.h"
#include "VelkinImpl.h"
#include "WebView/FindableWebView.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {

/// The whole application on a desktop in memory.
class AppFixture : public testing::Test {
 protected:
  AppFixture() {
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~AppFixture() override { platform::setDebugLogSink({}); }

  /// As on a relaunch of a build whose notes were read and whose onboarding is done.
  void settleIn() {
    defaults.set(23, UserDefault::releaseNoteBuildVersion);
    defaults.set(true, UserDefault::onboardingCompleted);
  }

  VelkinImpl& launch() {
    app = std::make_unique<AppDelegate>();
    platform::NSApp().run(*app);
    desktop.queue.drain();
    return *app->menuBar;
  }

  platform::HeadlessStatusItem& statusItem() { return *desktop.statusItems.back(); }
  platform::HeadlessPopover& popover() { return *desktop.popovers.back(); }
  void leftClick() { statusItem().statusButton.click(platform::NSEvent::EventType::leftMouseUp); }
  void rightClick() { statusItem().statusButton.click(platform::NSEvent::EventType::rightMouseUp); }
  static platform::HeadlessWebView& engineOf(const WebView& view) {
    return dynamic_cast<platform::HeadlessWebView&>(*view.webView);
  }
  platform::NSMenuItem* menuItem(std::string_view title) {
    for (const auto& item : statusItem().preparedMenu->items()) {
      if (item->title() == title) return item.get();
    }
    return nullptr;
  }
  bool hasLogged(std::string_view text) const {
    for (const auto& line : log) {
      if (line.find(text) != std::string::npos) return true;
    }
    return false;
  }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  std::vector<std::string> log;
  std::unique_ptr<AppDelegate> app;
};

}  // namespace velkin
