#pragma once

#include "Helpers/ScriptingHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/SharedState.h"
#include "Values/MenuHelperDelegate.h"
#include "WebView/ServicePages.h"
#include "WebView/ToolbarUIView.h"
#include "WebView/WebView.h"

#include <memory>
#include <optional>
#include <string>

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

  MenuHelperDelegate* menuDelegate = nullptr;
  std::shared_ptr<ScriptingHelper> scripting;
  std::optional<WebView> webView;
  /// For the sidebars.
  ServicePages pages;
  /// The scratchpad, as main view or in a sidebar.
  platform::View markdownView = platform::EmptyView();
  platform::ObservedObject<SharedState> sharedState;
  platform::State<bool> isFind{true};
  platform::State<bool> isPrevNextButtonDisabled{true};
  platform::State<bool> isNotFoundTextHidden{true};
  platform::State<std::string> text{};

  const WebView& bardWebView() const { return pages[WebViewSwitchType::bard]; }
  const WebView& bitBucketWebView() const { return pages[WebViewSwitchType::bitbucket]; }
  const WebView& chatWebView() const { return pages[WebViewSwitchType::chatgpt]; }
  const WebView& gitLabWebView() const { return pages[WebViewSwitchType::gitlab]; }
  const WebView& hemingwayWebView() const { return pages[WebViewSwitchType::hemingway]; }
  const WebView& jiraWebView() const { return pages[WebViewSwitchType::jira]; }

  bool isSideBarViewing() const { return sharedState->hasSidebars(); }
  bool isWideEnoughToShowChat() const;
  bool isTallEnoughToShowChat() const;
  bool isMarkdownMainView() const;

  platform::View body() const;
  ToolbarUIView toolbar() const { return {.menuDelegate = menuDelegate, .webView = webView}; }
  /// The main web view with its find bar.
  platform::View findableWebView() const;

  void searchFieldDidStartSearching() const;
  void textChanged(const std::string& newText) const;
  void doneClicked() const;

 private:
  platform::View findBar() const;
  /// The toolbar, if it shows, and what is in the main place.
  platform::Views mainPlace() const;
  /// Nothing if the view isn't open. A view has one place at a time: what has the main place has no sidebar,
  /// whatever its flag says, as it may after a group that names a view twice.
  platform::View sidebar(WebViewSwitchType view, const platform::Frame& frame, bool isDividerFirst) const;
  platform::View sideBySide() const;
  platform::View oneAboveTheOther() const;
};

}  // namespace velkin
