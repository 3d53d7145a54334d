#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Markdown/MarkdownScratchpad.h"
#include "Platform/NSHostingController.h"
#include "Platform/NSPopover.h"
#include "ReleaseNotes/ReleaseNotesUIView.h"
#include "UserData/SharedState.h"
#include "WebView/FindableWebView.h"
#include "WebView/ServicePages.h"

#include <memory>

namespace velkin {

/// What the popover holds at the moment, and which page has the main place. The rooms of the controller meet
/// here. Main thread.
class PopoverContent {
 public:
  PopoverContent(std::shared_ptr<platform::NSPopover> popover, ServicePages pages);

  const std::shared_ptr<platform::NSPopover> popover;
  const ServicePages pages;
  /// Handed to all views.
  const std::shared_ptr<SharedState> sharedState = std::make_shared<SharedState>();
  const std::shared_ptr<ScriptingHelper> scripting = ScriptingHelper::make();
  /// The one in the main place.
  WebView currentWebView;
  std::shared_ptr<platform::NSHostingController<FindableWebView>> hostedWebView;
  std::shared_ptr<platform::NSHostingController<ReleaseNotesUIView>> hostedNotesView;
  /// Of the container on show, whether it is in sight or not.
  std::shared_ptr<MarkdownScratchpad> scratchpad;
  /// True until the popover is toggled first: lets the very first switch to chat pass.
  bool isInitialLaunch = false;

  /// The content is a `FindableWebView`.
  bool isFindableView() const { return hostedWebView != nullptr; }
  bool isFindableOrMarkdownView() const;
  /// What stays on show until the next content is no longer known as a page.
  void forgetHosts();
  /// The view that the content is of. The search bar is none: it leaves the content as it is.
  WebViewSwitchType view = WebViewSwitchType::chatgpt;
  /// Makes the content's view the last visible one again, behind a search.
  void forgetSearch() const;
  void show(std::shared_ptr<platform::NSHostingController<FindableWebView>> container);
  void show(std::shared_ptr<platform::NSHostingController<ReleaseNotesUIView>> notes);
  /// The page that is saved and printed; the release notes count as one.
  platform::WKWebView& pageOnShow() const;
  /// Not to a page that isn't on show: it would take the keyboard when it comes to a sidebar.
  void giveKeyboardToMainView() const;

 private:
  UserDefaultsHelper defaults_;
};

}  // namespace velkin
