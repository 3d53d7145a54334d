#pragma once

#include "Helpers/ScriptingHelper.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/HotkeySolutionDelegate.h"
#include "Keyboard/QKKeyboardShortcutHelper.h"
#include "MenuHelper.h"
#include "Onboarding/PagePlace.h"
#include "Platform/NSHostingController.h"
#include "Platform/NSMenu.h"
#include "Platform/NSPanel.h"
#include "Platform/NSPopover.h"
#include "Platform/NSStatusItem.h"
#include "Platform/WKWebView.h"
#include "ReleaseNotes/ReleaseNotesUIView.h"
#include "SearchBar/AnswerPage.h"
#include "UserData/SharedState.h"
#include "WebView/FindableWebView.h"
#include "WebView/WebView.h"
#include "WebView/WebViewSwitchType.h"

#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// The central controller: one for the life of the process. It owns the status item, the popover's content,
/// the six web views and the panels, and everything else calls back on it. Its operations stand in four
/// files: this one's own (launch, status item, popover), VelkinImplSwitching, VelkinImplGeometry and
/// VelkinImplPanels. Main thread.
class VelkinImpl : public platform::NSMenuDelegate,
                   public platform::NSWindowDelegate,
                   public platform::WKUIDelegate,
                   public MenuHelperDelegate,
                   public QKKeyboardShortcutHelperDelegate,
                   public HotkeySolutionDelegate,
                   public ReleaseNotesUIViewDelegate {
 public:
  using PlaceController = platform::NSHostingController<PagePlace>;

  VelkinImpl(std::shared_ptr<platform::NSPopover> popover, WebView bardWebView, WebView bitbucketWebView,
             WebView chatWebView, WebView gitlabWebView, WebView hemingwayWebView, WebView jiraWebView);
  ~VelkinImpl() override;
  VelkinImpl(const VelkinImpl&) = delete;
  VelkinImpl& operator=(const VelkinImpl&) = delete;

  /// True until the popover is toggled first: lets the very first switch to chat pass.
  bool isInitialLaunch = false;
  UserDefaultsHelper defaults;
  const std::shared_ptr<ScriptingHelper> scriptingHelper = ScriptingHelper::make();
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
  std::shared_ptr<PlaceController> aboutHostingController;
  std::shared_ptr<PlaceController> appearanceHostingController;
  std::shared_ptr<PlaceController> shortcutsHostingController;
  /// The search bar's panel; nullptr means closed.
  std::unique_ptr<platform::NSPanel> searchBarHostingController;
  std::shared_ptr<KeptAnswerView> answerView = std::make_shared<KeptAnswerView>();
  const std::shared_ptr<platform::NSMenu> menu;
  std::unique_ptr<platform::NSPanel> appearancePanel;
  std::unique_ptr<platform::NSPanel> aboutPanel;
  std::unique_ptr<platform::NSPanel> shortcutsPanel;
  /// A text field has the focus.
  bool isTextInputFieldSelected = false;
  bool isShowingPopUpMenu = false;
  bool isDismissingPopUpMenu = false;

  /// Made at its first read.
  MenuHelper& menuBarHelper();
  QKKeyboardShortcutHelper& keyboardHelper() { return *keyboardHelper_; }

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
  void didScroll();
  void menuDidClose(platform::NSMenu& menu) override;
  /// The global shortcut of the popover.
  void didUseGlobalHotKeys() override;
  /// The global shortcut of the search bar: opens its panel, or closes it.
  void handleSearchBarDelegate() override;
  /// Brings a view on the screen, as the desktop asks for it by name.
  void showView(WebViewSwitchType type);
  void didClickReleaseNotesDone() override;

  /// Decides what the popover shows, and builds its content anew around the same pages.
  void switchWebViews(WebViewSwitchType type);
  void updateCurrentWebView();
  /// The popover's content is a `FindableWebView`.
  bool isFindableView() const;
  bool isFindableOrMarkdownView() const;
  void closeSideBarViews();
  /// Has the open sidebars of web views built again, at the window's present size.
  void resetSideBarViews();
  void setSidebarsForGroup(std::optional<WebViewSwitchType> type);

  /// Points.
  void updateWebViewWindowSize(double width, double height);
  bool getIsInFullScreenMode() const;
  void updateCurrentWebViewZoomLevel(double zoom);
  void updateSideBarZoomLevel(double zoom);

  void windowWillClose(platform::NSPanel& panel) override;
  void showViewAsPanel(platform::NSPanel& panel, platform::NSPoint origin);

  bool isSearchBarOpen() const override { return isSearchBarOpen_; }
  void setIsSearchBarOpen(bool isOpen) override { isSearchBarOpen_ = isOpen; }
  void switchWebViewsClicked(int rawValue) override;
  void handlePopOverBehaviorUpdate(std::optional<bool> value) override;
  void handlePrintAction() override;
  void handleScreenCaptureAction() override;
  void handleWindowFindOnPage() override;
  void handleWindowBardOnPage() override;
  void handleWindowBitBucketOnPage() override;
  void handleWindowChatOnPage() override;
  void handleWindowGitLabOnPage() override;
  void handleWindowHemingwayOnPage() override;
  void handleWindowJiraOnPage() override;
  void handleWindowMarkdownOnPage() override;
  void handleZoomActual() override;
  void handleZoomIn() override;
  void handleZoomOut() override;
  void handleSideGroupClick(int number) override;
  void handleForward() override;
  void handleBack() override;
  void handleReloadFromOrigin() override;
  void handleWindowFullScreen() override;
  // The popover hangs from the panel: so the key for "up" makes it shorter, and it is this one that is
  // called.
  void handleWindowTaller() override;
  void handleWindowShorter() override;
  void handleWindowWider() override;
  void handleWindowSlimmer() override;
  void handlePageUp() override;
  void handlePageDown() override;
  void handleEnter() override;
  /// Closes the innermost thing that is open.
  void handleEsc() override;

  void aboutClicked() override;
  void homeClicked() override;
  void shortcutsClicked() override;
  void appearanceClicked() override;
  void preferencesClicked() override;
  void previewClicked() override;
  void toolbarClicked() override;
  void stickyClicked() override;
  void experimentalClicked() override;
  void reloadClicked() override;
  void openClicked() override;
  void quitClicked() override;

 private:
  using Flag = platform::Published<bool>;

  void setUpStatusItem();
  void setUpGlobalShortcuts();
  void showFirstView();
  int buildNumber() const;
  void giveKeyboardToMainView();

  void showPage(WebViewSwitchType type, bool isToggle);
  void showContainer(WebViewSwitchType shown, bool isToggle);
  void showReleaseNotes();
  void showPlace(WebViewSwitchType type, const char* title);
  void showSearchPanel();
  const WebView& webViewOf(WebViewSwitchType type) const;
  Flag* flagOf(WebViewSwitchType type) const;
  void toggleSideBar(WebViewSwitchType type);

  void stepHeight(int direction, const char* logLine);
  void stepWidth(int direction, const char* logLine);
  void stepZoom(int direction, const char* logLine);
  void setZoom(double zoom);
  /// Points.
  void storeSize(double width, double height) const;
  void showExpandOverlay();

  /// Turns the item's check mark round; returns whether it is on now.
  static bool toggle(platform::NSMenuItem& item);
  std::unique_ptr<platform::NSPanel> openPanel(const std::shared_ptr<PlaceController>& content,
                                               const char* title, double left, double below);

  bool isSearchBarOpen_ = false;
  std::unique_ptr<MenuHelper> menuBarHelper_;
  std::unique_ptr<QKKeyboardShortcutHelper> keyboardHelper_;
};

}  // namespace velkin
