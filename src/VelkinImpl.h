#pragma once

#include "Keyboard/HotkeySolutionDelegate.h"
#include "Keyboard/QKKeyboardShortcutHelperDelegate.h"
#include "Platform/NSMenu.h"
#include "Platform/NSPanel.h"
#include "Platform/WKWebView.h"
#include "Values/AppearanceUIViewDelegate.h"
#include "Values/MenuHelperDelegate.h"
#include "Values/PageDelegates.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {
class NSPopover;
class NSStatusItem;
class NSViewController;
template <class V>
class NSHostingController;
}  // namespace platform

namespace velkin {

class MenuHelper;
class QKKeyboardShortcutHelper;
class ScriptingHelper;
class SharedState;
enum class WebViewSwitchType : int;
struct FindableWebView;
struct ReleaseNotesUIView;
struct WebView;

/// The central controller: one for the life of the process. Everything else calls back on it; it does nothing
/// itself, but hands each call on to the room in `Controller/` whose matter it is. Main thread.
class VelkinImpl : public platform::NSMenuDelegate,
                   public platform::NSWindowDelegate,
                   public platform::WKUIDelegate,
                   public MenuHelperDelegate,
                   public QKKeyboardShortcutHelperDelegate,
                   public HotkeySolutionDelegate,
                   public ReleaseNotesUIViewDelegate,
                   public AboutUIViewDelegate,
                   public EasterEggUrlEditingUIViewDelegate,
                   public OnboardingUIViewDelegate,
                   public AppearanceUIViewDelegate {
 public:
  template <class V>
  using Host = std::shared_ptr<platform::NSHostingController<V>>;
  using Controller = std::shared_ptr<platform::NSViewController>;

  VelkinImpl(std::shared_ptr<platform::NSPopover> popover, WebView bardWebView, WebView bitbucketWebView,
             WebView chatWebView, WebView gitlabWebView, WebView hemingwayWebView, WebView jiraWebView);
  ~VelkinImpl() override;
  VelkinImpl(const VelkinImpl&) = delete;
  VelkinImpl& operator=(const VelkinImpl&) = delete;

  // What can be seen of it.
  bool isInitialLaunch() const;
  bool isShowingPopUpMenu() const;
  bool isDismissingPopUpMenu() const;
  const std::shared_ptr<ScriptingHelper>& scriptingHelper() const;
  platform::NSStatusItem& menuBarItem() const;
  platform::NSPopover& popover() const;
  const std::shared_ptr<platform::NSMenu>& menu() const;
  MenuHelper& menuBarHelper();
  QKKeyboardShortcutHelper& keyboardHelper();
  /// Handed to all views.
  const std::shared_ptr<SharedState>& isFindingWebState() const;
  const WebView& bardWebView() const;
  const WebView& bitbucketWebView() const;
  const WebView& chatWebView() const;
  const WebView& gitlabWebView() const;
  const WebView& hemingwayWebView() const;
  const WebView& jiraWebView() const;
  /// The one in the main place.
  const WebView& currentWebView() const;
  const Host<FindableWebView>& hostedWebView() const;
  const Host<ReleaseNotesUIView>& hostedNotesView() const;
  const Controller& aboutHostingController() const;
  const Controller& appearanceHostingController() const;
  const Controller& shortcutsHostingController() const;
  platform::NSPanel& aboutPanel() const;
  platform::NSPanel& appearancePanel() const;
  platform::NSPanel& shortcutsPanel() const;
  /// The search bar's panel; nullptr means closed.
  platform::NSPanel* searchBarHostingController() const;

  // The status item and the popover.
  void menuButtonClicked();
  void togglePopover();
  void showPopover(bool useLargeSize = false);
  void toggleMenu();
  void updatePopoverBehavior(bool force = false);
  void didScroll();
  void menuDidClose(platform::NSMenu& menu) override;
  void didUseGlobalHotKeys() override;
  void handleSearchBarDelegate() override;

  // What is on show, and beside it.
  void showView(WebViewSwitchType type);
  void switchWebViews(WebViewSwitchType type);
  void updateCurrentWebView();
  bool isFindableView() const;
  bool isFindableOrMarkdownView() const;
  void closeSideBarViews();
  void resetSideBarViews();
  void setSidebarsForGroup(std::optional<WebViewSwitchType> type);
  void didClickReleaseNotesDone() override;

  // The pages that lead in and around.
  void didCompleteOnboarding() override;
  void didClickEasterEggUrlEditingDone() override;
  void didEnableDisableEasterEgg() override;
  void didClickReleaseNotesButton() override;
  void didClickOnboardingButton() override;
  void didClickEditUrlsButton() override;
  void didClickToolbarCheckbox() override;
  void didClickStartAtLogin(bool isEnabled) override;
  /// Has the login helper started with the user's sessions, or not any more. Stores nothing.
  void updateStartAtLoginBehavior(bool enabled);

  // Sizes and zoom. Points.
  void updateWebViewWindowSize(double width, double height) override;
  bool getIsInFullScreenMode() const;
  void updateCurrentWebViewZoomLevel(double zoom);
  void updateSideBarZoomLevel(double zoom);

  // The panels.
  void didReload(platform::WKWebView& webView) override;
  void windowWillClose(platform::NSPanel& panel) override;
  void showViewAsPanel(platform::NSPanel& panel, platform::NSPoint origin);

  // The keys.
  bool isSearchBarOpen() const override;
  void setIsSearchBarOpen(bool isOpen) override;
  void switchWebViewsClicked(int rawValue) override;
  void handlePopOverBehaviorUpdate(std::optional<bool> value) override;
  void handlePrintAction() override;
  void handleScreenCaptureAction() override;
  // No key leads to these.
  void printWebViewFromArchive();
  void printWebViewContent(platform::WKWebView& webView);
  /// The page on show as a web archive, or nothing.
  void getWebArchive(std::function<void(std::optional<std::string>)> completion);
  void captureScreen();
  void printUsingPdfCunctions();
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

  // The menu and the toolbar.
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
  struct Constants;
  struct Rooms;
  /// From a panel's button to a page in the popover.
  void leadTo(WebViewSwitchType page);
  std::unique_ptr<Rooms> rooms_;
};

}  // namespace velkin
