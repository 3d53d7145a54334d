#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSApplication.h"
#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSPopover.h"
#include "VelkinImpl.h"
#include "WebView/WebViewHelper.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// The program's entry: makes the six web views and the popover and hands them to the controller, which it
/// keeps for the life of the process. Main thread.
class AppDelegate : public platform::NSApplicationDelegate {
 public:
  /// Posted to the login helper, which ends itself on it.
  static constexpr const char* killLauncher = "killLauncher";

  AppDelegate();

  UserDefaultsHelper defaults;
  WebViewHelper webHelper;
  bool isSearching = false;

  /// Of the window, in points, as they were at the first read.
  double width();
  double height();

  /// Each is made once, at its first read. The program uses the third family; the other two are alternatives.
  const std::shared_ptr<platform::WKWebView>& bardWKWebView();
  const std::shared_ptr<platform::WKWebView>& chatWKWebView();
  const std::shared_ptr<platform::WKWebView>& hemingwayWKWebView();
  const std::shared_ptr<platform::WKWebView>& bitbucketWKWebView();
  const std::shared_ptr<platform::WKWebView>& gitlabWKWebView();
  const std::shared_ptr<platform::WKWebView>& jiraWKWebView();
  const WrappedWebView& bardWrappedWebView();
  const WrappedWebView& hemingWrappedWebView();
  const WrappedWebView& chatWrappedWebView();
  const WrappedWebView& bitbucketWrappedWebView();
  const WrappedWebView& gitlabWrappedWebView();
  const WrappedWebView& jiraWrappedWebView();
  const WebView& bardWebView();
  const WebView& hemingWebView();
  const WebView& chatWebView();
  const WebView& bitbucketWebView();
  const WebView& gitlabWebView();
  const WebView& jiraWebView();

  /// The controller; nullptr until the launch has ended.
  std::unique_ptr<VelkinImpl> menuBar;
  std::shared_ptr<platform::NSPopover> popover;
  const std::string helperBundleId = "com.tarnvale.VelkinLauncher";

  void applicationDidFinishLaunching() override;
  /// Nothing is left to do: every setting is written when it changes.
  void applicationWillTerminate() override {}
  void applicationDidReopen() override;
  void applicationPerformAction(std::string_view name, std::string_view argument) override;

  /// Watches nothing on purpose: `isDarkMode` is what the desktop had at launch.
  void setupDarkModeMonitor() {}
  /// Turns the stored `isDarkMode` round, without a look at the desktop.
  void interfaceModeChanged();

 private:
  void tellLauncher();

  /// One member of each family for each of the six services.
  struct Lazy {
    std::shared_ptr<platform::WKWebView> wkWebView;
    std::optional<WrappedWebView> wrapped;
    std::optional<WebView> view;
  };
  const std::shared_ptr<platform::WKWebView>& wkWebView(WebViewSwitchType type);
  const WrappedWebView& wrappedWebView(WebViewSwitchType type);
  const WebView& webView(WebViewSwitchType type);

  std::map<WebViewSwitchType, Lazy> lazy_;
  /// Of a desktop that hadn't said what it is like when the program was launched.
  platform::Connection firstTold_;
  std::optional<double> width_;
  std::optional<double> height_;
};

}  // namespace velkin
