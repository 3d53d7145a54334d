#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/SharedState.h"
#include "WebView/WebView.h"

#include <memory>
#include <optional>

namespace velkin {

/// The root view of the popover while a web view is on show: the main view and, beside or below it, the open
/// sidebars, as `SharedState` and the window's size have them. A new one is made at every switch, around the
/// same pages. Main thread.
struct FindableWebView {
  /// The smallest side of a sidebar, in points.
  static constexpr double minChatSize = 448;
  /// A sidebar's share of the window.
  static constexpr double maxSideBarWidth = 0.15;
  static constexpr double maxSideBarHeight = 0.21;

  std::optional<WebView> webView;
  WebView bardWebView;
  WebView bitBucketWebView;
  WebView chatWebView;
  WebView gitLabWebView;
  WebView hemingwayWebView;
  WebView jiraWebView;
  platform::ObservedObject<SharedState> sharedState;

  bool isSideBarViewing() const;
  bool isWideEnoughToShowChat() const;
  bool isTallEnoughToShowChat() const;

  platform::View body() const;
  platform::View findableWebView() const;

 private:
  platform::View sideBySide() const;
  platform::View oneAboveTheOther() const;
};

}  // namespace velkin
