#include "VelkinImpl.h"

#include "Controller/AuxiliaryPanels.h"
#include "Controller/Finding.h"
#include "Controller/PageCommands.h"
#include "Controller/PageExport.h"
#include "Controller/PagePrinting.h"
#include "Controller/SearchPanel.h"
#include "Controller/Sidebars.h"
#include "Controller/StartNotices.h"
#include "Controller/StatusItem.h"
#include "Controller/ViewSwitcher.h"
#include "Controller/WindowGeometry.h"
#include "Keyboard/DesktopKeys.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/QKKeyboardShortcutHelper.h"
#include "Keyboard/RecorderCocoa.h"
#include "Platform/Alive.h"
#include "Platform/DebugLog.h"
#include "Platform/NSApplication.h"
#include "Platform/SystemServices.h"
#include "Values/AppearanceFontSize.h"

#include <utility>

namespace velkin {

using enum WebViewSwitchType;
using Panel = AuxiliaryPanels::Kind;

struct VelkinImpl::Constants {
  static constexpr const char* helperBundleId = "com.tarnvale.VelkinLauncher";
};

struct VelkinImpl::Rooms {
  Rooms(VelkinImpl& owner, std::shared_ptr<platform::NSPopover> popover, ServicePages pages)
      : content(std::move(popover), std::move(pages)),
        views({.menu = &owner,
               .releaseNotes = &owner,
               .about = &owner,
               .appearance = &owner,
               .urlEditing = &owner,
               .onboarding = &owner},
              content),
        statusItem(content, owner, owner),
        panels(views, &owner) {}

  PopoverContent content;
  ViewFactory views;
  Sidebars sidebars{content};
  WindowGeometry geometry{content, sidebars};
  StatusItem statusItem;
  SearchPanel searchPanel{views};
  AuxiliaryPanels panels;
  ViewSwitcher switcher{{content, views, sidebars, geometry, statusItem, searchPanel}};
  Finding finding{content};
  PageCommands page{content};
  PageExport pageExport{content};
  PagePrinting pagePrinting{content};
  std::unique_ptr<QKKeyboardShortcutHelper> keyboard;
  std::unique_ptr<DesktopKeys> desktopKeys;
  std::unique_ptr<platform::Timer> startNotices;
  /// For what comes back after a while.
  platform::Alive isAlive;
};

VelkinImpl::VelkinImpl(std::shared_ptr<platform::NSPopover> popover, WebView bard, WebView bitbucket,
                       WebView chat, WebView gitlab, WebView hemingway, WebView jira)
    : rooms_(
          std::make_unique<Rooms>(*this, std::move(popover),
                                  ServicePages({std::move(chat), std::move(bard), std::move(bitbucket),
                                                std::move(gitlab), std::move(hemingway), std::move(jira)}))) {
  currentWebView().webView->uiDelegate = this;
  updatePopoverBehavior(false);
  rooms_->statusItem.ask = [this] { showView(search); };
  rooms_->statusItem.setUp();
  using KeyboardShortcuts::Name;
  KeyboardShortcuts::onKeyDown(Name::searchBarShortcut(), [this] { handleSearchBarDelegate(); });
  KeyboardShortcuts::onKeyDown(Name::popUpShortcut(), [this] { didUseGlobalHotKeys(); });
  rooms_->content.isInitialLaunch = true;
  const bool isFreshInstall = UserDefaultsHelper().releaseNoteBuildVersion() == 0;
  rooms_->switcher.showFirst();
  isFindingWebState()->showToolbar.set(UserDefaultsHelper().showToolBar());
  rooms_->keyboard =
      std::make_unique<QKKeyboardShortcutHelper>(*this, *rooms_->content.popover, menuBarItem(), *this);
  keyboardHelper().resetKeyPressBools();
  keyboardHelper().modifierKeyBools();
  rooms_->desktopKeys = std::make_unique<DesktopKeys>(*this, *rooms_->content.popover);
  const auto alive = rooms_->isAlive.watch();
  rooms_->startNotices = tellAfterStart(
      isFreshInstall,
      [this, alive] {
        if (alive && !this->popover().isShown()) togglePopover();
      },
      [this, alive] {
        if (alive) shortcutsClicked();
      });
}

VelkinImpl::~VelkinImpl() { KeyboardShortcuts::shutDown(); }

bool VelkinImpl::isInitialLaunch() const { return rooms_->content.isInitialLaunch; }
bool VelkinImpl::isShowingPopUpMenu() const { return rooms_->statusItem.isShowingPopUpMenu; }
bool VelkinImpl::isDismissingPopUpMenu() const { return rooms_->statusItem.isDismissingPopUpMenu; }
const std::shared_ptr<ScriptingHelper>& VelkinImpl::scriptingHelper() const {
  return rooms_->content.scripting;
}
platform::NSStatusItem& VelkinImpl::menuBarItem() const { return *rooms_->statusItem.menuBarItem; }
platform::NSPopover& VelkinImpl::popover() const { return *rooms_->content.popover; }
const std::shared_ptr<platform::NSMenu>& VelkinImpl::menu() const { return rooms_->statusItem.menu; }
MenuHelper& VelkinImpl::menuBarHelper() { return rooms_->statusItem.menuBarHelper(); }
QKKeyboardShortcutHelper& VelkinImpl::keyboardHelper() { return *rooms_->keyboard; }
const std::shared_ptr<SharedState>& VelkinImpl::isFindingWebState() const {
  return rooms_->content.sharedState;
}
const WebView& VelkinImpl::bardWebView() const { return rooms_->content.pages[bard]; }
const WebView& VelkinImpl::bitbucketWebView() const { return rooms_->content.pages[bitbucket]; }
const WebView& VelkinImpl::chatWebView() const { return rooms_->content.pages[chatgpt]; }
const WebView& VelkinImpl::gitlabWebView() const { return rooms_->content.pages[gitlab]; }
const WebView& VelkinImpl::hemingwayWebView() const { return rooms_->content.pages[hemingway]; }
const WebView& VelkinImpl::jiraWebView() const { return rooms_->content.pages[jira]; }
const WebView& VelkinImpl::currentWebView() const { return rooms_->content.currentWebView; }
const VelkinImpl::Host<FindableWebView>& VelkinImpl::hostedWebView() const {
  return rooms_->content.hostedWebView;
}
const VelkinImpl::Host<ReleaseNotesUIView>& VelkinImpl::hostedNotesView() const {
  return rooms_->content.hostedNotesView;
}
const VelkinImpl::Controller& VelkinImpl::aboutHostingController() const {
  return rooms_->panels.content(Panel::about);
}
const VelkinImpl::Controller& VelkinImpl::appearanceHostingController() const {
  return rooms_->panels.content(Panel::appearance);
}
const VelkinImpl::Controller& VelkinImpl::shortcutsHostingController() const {
  return rooms_->panels.content(Panel::shortcuts);
}
platform::NSPanel& VelkinImpl::aboutPanel() const { return rooms_->panels.panel(Panel::about); }
platform::NSPanel& VelkinImpl::appearancePanel() const { return rooms_->panels.panel(Panel::appearance); }
platform::NSPanel& VelkinImpl::shortcutsPanel() const { return rooms_->panels.panel(Panel::shortcuts); }
platform::NSPanel* VelkinImpl::searchBarHostingController() const {
  return rooms_->searchPanel.panel().get();
}

void VelkinImpl::menuButtonClicked() { rooms_->statusItem.clicked(); }
void VelkinImpl::togglePopover() { rooms_->statusItem.togglePopover(); }
void VelkinImpl::showPopover(bool useLargeSize) { rooms_->statusItem.showPopover(useLargeSize); }
void VelkinImpl::toggleMenu() { rooms_->statusItem.toggleMenu(); }
void VelkinImpl::updatePopoverBehavior(bool force) { rooms_->statusItem.updatePopoverBehavior(force); }
void VelkinImpl::didScroll() { platform::debugLog("VelkinImpl", "didScroll()", ""); }
void VelkinImpl::menuDidClose(platform::NSMenu&) { rooms_->statusItem.menuDidClose(); }
void VelkinImpl::didUseGlobalHotKeys() {
  platform::debugLog("Q$: didUseGlobalHotKeys");
  togglePopover();
}
void VelkinImpl::handleSearchBarDelegate() {
  rooms_->switcher.toggleSearchBar([this] { handleEsc(); });
}

void VelkinImpl::showView(WebViewSwitchType type) {
  if (type != search) return rooms_->switcher.bringUp(type);
  if (searchBarHostingController() == nullptr) handleSearchBarDelegate();
}
void VelkinImpl::switchWebViews(WebViewSwitchType type) { rooms_->switcher.switchTo(type); }
void VelkinImpl::updateCurrentWebView() { rooms_->switcher.updateCurrentWebView(); }
bool VelkinImpl::isFindableView() const { return rooms_->content.isFindableView(); }
bool VelkinImpl::isFindableOrMarkdownView() const { return rooms_->content.isFindableOrMarkdownView(); }
void VelkinImpl::closeSideBarViews() { rooms_->sidebars.close(); }
void VelkinImpl::resetSideBarViews() { rooms_->sidebars.reset(); }
void VelkinImpl::setSidebarsForGroup(std::optional<WebViewSwitchType> type) { rooms_->sidebars.open(type); }
void VelkinImpl::didClickReleaseNotesDone() { rooms_->switcher.releaseNotesAreRead(); }
void VelkinImpl::didCompleteOnboarding() {
  platform::debugLog("didCompleteOnboarding()");
  rooms_->switcher.onboardingIsDone();
}
void VelkinImpl::didClickEasterEggUrlEditingDone() { rooms_->switcher.backToChat(); }
void VelkinImpl::didEnableDisableEasterEgg() { rooms_->switcher.backToChat(); }
void VelkinImpl::didClickReleaseNotesButton() { leadTo(releaseNotes); }
void VelkinImpl::didClickOnboardingButton() { leadTo(onboarding); }
void VelkinImpl::didClickEditUrlsButton() { leadTo(editUrls); }
void VelkinImpl::didClickToolbarCheckbox() { toolbarClicked(); }
void VelkinImpl::didClickStartAtLogin(bool isEnabled) { updateStartAtLoginBehavior(isEnabled); }
void VelkinImpl::updateStartAtLoginBehavior(bool enabled) {
  platform::debugLog("Update login prefs here!");
  platform::SMLoginItemSetEnabled(Constants::helperBundleId, enabled);
}
void VelkinImpl::leadTo(WebViewSwitchType page) {
  handleEsc();
  switchWebViews(page);
  // A button that was clicked leads somewhere: a page in a closed popover would be nowhere.
  if (!popover().isShown()) showPopover(true);
}

void VelkinImpl::updateWebViewWindowSize(double width, double height) {
  rooms_->geometry.updateWindowSize(width, height);
}
bool VelkinImpl::getIsInFullScreenMode() const { return rooms_->geometry.isFullScreen(); }
void VelkinImpl::updateCurrentWebViewZoomLevel(double zoom) { rooms_->geometry.updateCurrentZoom(zoom); }
void VelkinImpl::updateSideBarZoomLevel(double zoom) { rooms_->sidebars.setZoom(zoom); }

void VelkinImpl::windowWillClose(platform::NSPanel& panel) {
  KeyboardShortcuts::RecorderCocoa::stopRecording();
  rooms_->panels.releaseContents(panel);
}
void VelkinImpl::didReload(platform::WKWebView&) { scriptingHelper()->pageReloaded(); }
void VelkinImpl::showViewAsPanel(platform::NSPanel& panel, platform::NSPoint origin) {
  rooms_->panels.show(panel, origin);
}

bool VelkinImpl::isSearchBarOpen() const { return rooms_->searchPanel.isSearchBarOpen; }
void VelkinImpl::setIsSearchBarOpen(bool isOpen) { rooms_->searchPanel.isSearchBarOpen = isOpen; }
void VelkinImpl::switchWebViewsClicked(int rawValue) { rooms_->switcher.switchToNumber(rawValue); }
void VelkinImpl::handlePopOverBehaviorUpdate(std::optional<bool> value) {
  updatePopoverBehavior(value.value_or(false));
}
void VelkinImpl::handlePrintAction() { rooms_->pageExport.saveAsPdf(); }
void VelkinImpl::handleScreenCaptureAction() { rooms_->pageExport.saveAsWebArchive(); }
void VelkinImpl::printWebViewFromArchive() { rooms_->pagePrinting.printWebViewFromArchive(); }
void VelkinImpl::printWebViewContent(platform::WKWebView& webView) {
  rooms_->pagePrinting.printWebViewContent(webView);
}
void VelkinImpl::getWebArchive(std::function<void(std::optional<std::string>)> completion) {
  rooms_->pagePrinting.getWebArchive(std::move(completion));
}
void VelkinImpl::captureScreen() { rooms_->pagePrinting.captureScreen(); }
void VelkinImpl::printUsingPdfCunctions() { rooms_->pagePrinting.printUsingPdfCunctions(); }
void VelkinImpl::handleWindowFindOnPage() { rooms_->finding.toggle(); }
void VelkinImpl::handleWindowBardOnPage() { rooms_->sidebars.toggle(bard); }
void VelkinImpl::handleWindowBitBucketOnPage() { rooms_->sidebars.toggle(bitbucket); }
void VelkinImpl::handleWindowChatOnPage() { rooms_->sidebars.toggle(chatgpt); }
void VelkinImpl::handleWindowGitLabOnPage() { rooms_->sidebars.toggle(gitlab); }
void VelkinImpl::handleWindowHemingwayOnPage() { rooms_->sidebars.toggle(hemingway); }
void VelkinImpl::handleWindowJiraOnPage() { rooms_->sidebars.toggle(jira); }
void VelkinImpl::handleWindowMarkdownOnPage() { rooms_->sidebars.toggle(markdown); }
void VelkinImpl::handleZoomActual() {
  platform::debugLog("handleZoomActual!");
  rooms_->geometry.setZoom(rawValue(AppearanceFontSize::normal));
}
void VelkinImpl::handleZoomIn() { rooms_->geometry.stepZoom(-1, "handleZoomIn!"); }
void VelkinImpl::handleZoomOut() { rooms_->geometry.stepZoom(+1, "handleZoomOut!"); }
void VelkinImpl::handleSideGroupClick(int number) { rooms_->switcher.showGroup(number); }
void VelkinImpl::handleForward() { rooms_->page.goForward(); }
void VelkinImpl::handleBack() { rooms_->page.goBack(); }
void VelkinImpl::handleReloadFromOrigin() { rooms_->page.reloadFromOrigin(); }
void VelkinImpl::handleWindowFullScreen() { rooms_->geometry.toggleFullScreen(); }
void VelkinImpl::handleWindowTaller() { rooms_->geometry.stepHeight(-1, "handleWindowShorter!"); }
void VelkinImpl::handleWindowShorter() { rooms_->geometry.stepHeight(+1, "handleWindowTaller!"); }
void VelkinImpl::handleWindowWider() { rooms_->geometry.stepWidth(-1, "handleWindowWider!"); }
void VelkinImpl::handleWindowSlimmer() { rooms_->geometry.stepWidth(+1, "handleWindowSlimmer!"); }
void VelkinImpl::handlePageUp() { rooms_->page.scrollPageUp(); }
void VelkinImpl::handlePageDown() { rooms_->page.scrollPageDown(); }
void VelkinImpl::handleEnter() { rooms_->page.submitForm(); }
void VelkinImpl::handleEsc() {
  rooms_->finding.end() || rooms_->searchPanel.close() || rooms_->pageExport.cancel() ||
      rooms_->statusItem.closePopover();
}

void VelkinImpl::aboutClicked() { rooms_->panels.open(Panel::about); }
void VelkinImpl::homeClicked() { handleReloadFromOrigin(); }
void VelkinImpl::shortcutsClicked() { rooms_->panels.open(Panel::shortcuts); }
void VelkinImpl::appearanceClicked() { rooms_->panels.open(Panel::appearance); }
void VelkinImpl::preferencesClicked() { rooms_->statusItem.clearMenu(); }
void VelkinImpl::previewClicked() { platform::debugLog("Preview click!"); }
void VelkinImpl::toolbarClicked() { rooms_->statusItem.toggleToolbar(); }
void VelkinImpl::stickyClicked() { rooms_->statusItem.toggleSticky(); }
void VelkinImpl::experimentalClicked() { rooms_->statusItem.toggleExperimental(); }
void VelkinImpl::reloadClicked() { rooms_->page.reload(); }
void VelkinImpl::openClicked() { rooms_->page.openInBrowser(); }
void VelkinImpl::quitClicked() {
  platform::debugLog("Quit click!");
  platform::NSApp().exit(0);
}

}  // namespace velkin
