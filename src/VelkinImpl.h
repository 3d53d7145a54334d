#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "MenuHelper.h"
#include "Platform/NSHostingController.h"
#include "Platform/NSMenu.h"
#include "Platform/NSPopover.h"
#include "Platform/NSStatusItem.h"
#include "Platform/WKWebView.h"
#include "ReleaseNotes/ReleaseNotesUIView.h"
#include "UserData/SharedState.h"
#include "WebView/FindableWebView.h"
#include "WebView/WebView.h"
#include "WebView/WebViewSwitchType.h"

#include <memory>
#include <optional>

namespace velkin {

/// The central controller: one for the life of the process. It owns the status item, the popover's content
/// and the six web views, and everything else calls back on it. Main thread.
class VelkinImpl : public platform::NSMenuDelegate,
                   public platform::WKUIDelegate,
                   public MenuHelperDelegate,
                   public ReleaseNotesUIViewDelegate {
 public:
  VelkinImpl(std::shared_ptr<platform::NSPopover> popover, WebView bardWebView, WebView bitbucketWebView,
             WebView chatWebView, WebView gitlabWebView, WebView hemingwayWebView, WebView jiraWebView);
  VelkinImpl(const VelkinImpl&) = delete;
  VelkinImpl& operator=(const VelkinImpl&) = delete;

  /// True until the popover is toggled first: lets the very first switch to chat pass.
  bool isInitialLaunch = false;
  UserDefaultsHelper defaults;
  platform::NSStatusBar menuBar;
  const std::unique_ptr<platform::NSStatusItem> menuBarItem;
  const std::shared_ptr<platform::NSPopover> popover;
  const WebView bardWebView;
  const WebView bitbucketWebView;
  const WebView chatWebView;
  const WebView gitlabWebView;
  const WebView hemingwayWebView;
  const WebView jiraWebView;
  /// The one in the main place.
  WebView currentWebView;
  std::shared_ptr<platform::NSHostingController<FindableWebView>> hostedWebView;
  std::shared_ptr<platform::NSHostingController<ReleaseNotesUIView>> hostedNotesView;
  /// Handed to all views.
  const std::shared_ptr<SharedState> isFindingWebState = std::make_shared<SharedState>();
  const std::shared_ptr<platform::NSMenu> menu;
  bool isShowingPopUpMenu = false;
  bool isDismissingPopUpMenu = false;

  /// Made at its first read.
  MenuHelper& menuBarHelper();

  /// The action of the status item's button.
  void menuButtonClicked();
  void togglePopover();
  /// With `useLargeSize`, at the size of the pages that introduce the program; else at the size of the
  /// settings.
  void showPopover(bool useLargeSize = false);
  /// Puts up the right-click menu, or clears it while it is up.
  void toggleMenu();
  /// Who closes the popover. With `force`, nobody but the program while it is shown.
  void updatePopoverBehavior(bool force = false);
  void handlePopOverBehaviorUpdate(std::optional<bool> value);
  /// Closes the innermost thing that is open.
  void handleEsc();
  void didScroll();

  /// Decides what the popover shows, and builds its content anew around the same pages.
  void switchWebViews(WebViewSwitchType type);

  void menuDidClose(platform::NSMenu& menu) override;
  void stickyClicked() override;
  void reloadClicked() override;
  void openClicked() override;
  void quitClicked() override;
  void didClickReleaseNotesDone() override;

 private:
  void setUpStatusItem();
  void showFirstView();
  void showPage(WebViewSwitchType type);
  void showReleaseNotes();
  const WebView& webViewOf(WebViewSwitchType type) const;
  int buildNumber() const;

  std::unique_ptr<MenuHelper> menuBarHelper_;
};

}  // namespace velkin
