#include "AppDelegate.h"

#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/LogText.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSBundle.h"
#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSWorkspace.h"
#include "Platform/Platform.h"
#include "UserData/FatalErrorRecovery.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"

#include <algorithm>

namespace velkin {

using enum WebViewSwitchType;

AppDelegate::AppDelegate() : popover(platform::NSPopover::make()) {}

double AppDelegate::width() {
  if (!width_) width_ = windowSize(fromRawValue<AppearanceWidth>(defaults.webViewWidth()));
  return *width_;
}

double AppDelegate::height() {
  if (!height_) height_ = windowSize(fromRawValue<AppearanceHeight>(defaults.webViewHeight()));
  return *height_;
}

const std::shared_ptr<platform::WKWebView>& AppDelegate::wkWebView(WebViewSwitchType type) {
  auto& made = lazy_[type].wkWebView;
  if (!made) made = webHelper.getWKWebView(type);
  return made;
}

const WrappedWebView& AppDelegate::wrappedWebView(WebViewSwitchType type) {
  auto& made = lazy_[type].wrapped;
  if (!made) made = webHelper.getWrappedWebView(type);
  return *made;
}

const WebView& AppDelegate::webView(WebViewSwitchType type) {
  auto& made = lazy_[type].view;
  if (!made) made = webHelper.getWebUIView(type);
  return *made;
}

const std::shared_ptr<platform::WKWebView>& AppDelegate::bardWKWebView() { return wkWebView(bard); }
const std::shared_ptr<platform::WKWebView>& AppDelegate::chatWKWebView() { return wkWebView(chatgpt); }
const std::shared_ptr<platform::WKWebView>& AppDelegate::hemingwayWKWebView() { return wkWebView(hemingway); }
const std::shared_ptr<platform::WKWebView>& AppDelegate::bitbucketWKWebView() { return wkWebView(bitbucket); }
const std::shared_ptr<platform::WKWebView>& AppDelegate::gitlabWKWebView() { return wkWebView(gitlab); }
const std::shared_ptr<platform::WKWebView>& AppDelegate::jiraWKWebView() { return wkWebView(jira); }
const WrappedWebView& AppDelegate::bardWrappedWebView() { return wrappedWebView(bard); }
const WrappedWebView& AppDelegate::hemingWrappedWebView() { return wrappedWebView(hemingway); }
const WrappedWebView& AppDelegate::chatWrappedWebView() { return wrappedWebView(chatgpt); }
const WrappedWebView& AppDelegate::bitbucketWrappedWebView() { return wrappedWebView(bitbucket); }
const WrappedWebView& AppDelegate::gitlabWrappedWebView() { return wrappedWebView(gitlab); }
const WrappedWebView& AppDelegate::jiraWrappedWebView() { return wrappedWebView(jira); }
const WebView& AppDelegate::bardWebView() { return webView(bard); }
const WebView& AppDelegate::hemingWebView() { return webView(hemingway); }
const WebView& AppDelegate::chatWebView() { return webView(chatgpt); }
const WebView& AppDelegate::bitbucketWebView() { return webView(bitbucket); }
const WebView& AppDelegate::gitlabWebView() { return webView(gitlab); }
const WebView& AppDelegate::jiraWebView() { return webView(jira); }

void AppDelegate::tellLauncher() {
  const auto running = platform::NSWorkspace::shared().runningApplications();
  const bool isRunning = std::any_of(running.begin(), running.end(),
                                     [&](const auto& app) { return app.bundleIdentifier == helperBundleId; });
  if (!isRunning) return;
  platform::NSDistributedNotificationCenter::defaultCenter().post(
      killLauncher, platform::unwrap(platform::NSBundle::main().bundleIdentifier));
}

void AppDelegate::applicationDidFinishLaunching() {
  if (platform::Platform::current().takeLastFatalError()) {
    recoverFromFatalError(platform::NSUserDefaults::standardUserDefaults());
  }
  tellLauncher();
  const auto readAppearance = [this] {
    const auto appearance = platform::NSAppearance::currentAppearance();
    defaults.set(platform::unwrap(appearance).isDark(), UserDefault::isDarkMode);
  };
  readAppearance();
  // At login the desktop may come up behind the program; what it says first is what it was like at launch.
  firstTold_ = platform::NSDistributedNotificationCenter::defaultCenter().addObserver(
      platform::appearanceFirstToldNotification, [readAppearance](const std::string&) { readAppearance(); });
  setupDarkModeMonitor();
  popover->setContentSize({defaults.webViewWidth(), defaults.webViewHeight()});
  menuBar = std::make_unique<VelkinImpl>(popover, bardWebView(), bitbucketWebView(), chatWebView(),
                                         gitlabWebView(), hemingWebView(), jiraWebView());
}

void AppDelegate::applicationDidReopen() {
  if (menuBar) menuBar->togglePopover();
}

void AppDelegate::applicationPerformAction(std::string_view name, std::string_view argument) {
  if (!menuBar) return;
  if (name == "toggle-popover") {
    menuBar->togglePopover();
  } else if (name == "toggle-search") {
    menuBar->handleSearchBarDelegate();
  } else if (const auto view = fromCaseName(argument); name == "show-view" && view) {
    menuBar->showView(*view);
  } else {
    platform::debugLog(
        "AppDelegate", "applicationPerformAction(_:_:)",
        "There is nothing like this: " + platform::forLog(std::string(name).append(" ").append(argument)));
  }
}

void AppDelegate::interfaceModeChanged() {
  const bool wasDark = defaults.isDarkMode();
  defaults.set(!wasDark, UserDefault::isDarkMode);
  platform::debugLog("AppDelegate", "interfaceModeChanged(sender:)",
                     std::string("isDarkMode=") + (wasDark ? "true" : "false"));
}

}  // namespace velkin
