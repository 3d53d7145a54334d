#include "VelkinImpl.h"

#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/FatalError.h"
#include "Platform/NSApplication.h"
#include "Platform/NSBundle.h"
#include "Platform/NSWorkspace.h"

#include <charconv>
#include <string>
#include <utility>

namespace velkin {

using platform::debugLog;
using platform::NSEvent;
using platform::NSMenuItem;
using platform::NSPopover;

namespace {

constexpr double statusItemLength = 28;
constexpr platform::NSSize statusImageSize{22, 22};

}  // namespace

VelkinImpl::VelkinImpl(std::shared_ptr<NSPopover> mainPopover, WebView bard, WebView bitbucket, WebView chat,
                       WebView gitlab, WebView hemingway, WebView jira)
    : menuBarItem(menuBar.statusItem(statusItemLength)),
      popover(std::move(mainPopover)),
      bardWebView(std::move(bard)),
      bitbucketWebView(std::move(bitbucket)),
      chatWebView(std::move(chat)),
      gitlabWebView(std::move(gitlab)),
      hemingwayWebView(std::move(hemingway)),
      jiraWebView(std::move(jira)),
      currentWebView(chatWebView),
      menu(menuBarItem->menu ? menuBarItem->menu : std::make_shared<platform::NSMenu>()),
      appearancePanel(platform::NSPanel::make()),
      aboutPanel(platform::NSPanel::make()),
      shortcutsPanel(platform::NSPanel::make()) {
  currentWebView.webView->uiDelegate = this;
  updatePopoverBehavior(false);
  setUpStatusItem();
  setUpGlobalShortcuts();
  isInitialLaunch = true;
  showFirstView();
  isFindingWebState->showToolbar.set(defaults.showToolBar());
  keyboardHelper_ = std::make_unique<QKKeyboardShortcutHelper>(*this, *popover, *menuBarItem, *this);
  keyboardHelper_->resetKeyPressBools();
  keyboardHelper_->modifierKeyBools();
}

VelkinImpl::~VelkinImpl() { KeyboardShortcuts::shutDown(); }

void VelkinImpl::setUpGlobalShortcuts() {
  using KeyboardShortcuts::Name;
  KeyboardShortcuts::onKeyDown(Name::searchBarShortcut(), [this] { handleSearchBarDelegate(); });
  KeyboardShortcuts::onKeyDown(Name::popUpShortcut(), [this] { didUseGlobalHotKeys(); });
}

void VelkinImpl::setUpStatusItem() {
  auto* button = menuBarItem->button();
  if (button == nullptr) return;
  button->setImage({"velkin.diamondgear.black", statusImageSize, true});
  button->action = [this] { menuButtonClicked(); };
  button->sendActionOn =
      NSEvent::mask(NSEvent::EventType::leftMouseUp) | NSEvent::mask(NSEvent::EventType::rightMouseUp);
  for (const auto& item : menuBarHelper().menuItems) menu->addItem(item);
  menu->delegate = this;
  menu->autoenablesItems = false;
  menuBarItem->prepareMenu(menu);
}

MenuHelper& VelkinImpl::menuBarHelper() {
  if (!menuBarHelper_) menuBarHelper_ = std::make_unique<MenuHelper>(this);
  return *menuBarHelper_;
}

int VelkinImpl::buildNumber() const {
  const auto& text = platform::unwrap(platform::NSBundle::main().version);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

void VelkinImpl::showFirstView() {
  const int build = buildNumber();
  if (defaults.releaseNoteBuildVersion() == build) {
    switchWebViews(WebViewSwitchType::chatgpt);
    return;
  }
  switchWebViews(WebViewSwitchType::releaseNotes);
  defaults.set(std::int64_t{build}, UserDefault::releaseNoteBuildVersion);
}

void VelkinImpl::menuButtonClicked() {
  const auto& event = platform::NSApp().currentEvent;
  if (platform::unwrap(event).type == NSEvent::EventType::rightMouseUp) {
    debugLog("Right click!");
    updatePopoverBehavior(true);
    toggleMenu();
    return;
  }
  debugLog("Left click!");
  updatePopoverBehavior(false);
  togglePopover();
}

void VelkinImpl::updatePopoverBehavior(bool force) {
  const bool isSticky = menuBarHelper().stickyMenuItem->state() != NSMenuItem::State::off;
  const bool staysOpen = isSticky || (popover->isShown() && force);
  popover->behavior = staysOpen ? NSPopover::Behavior::applicationDefined : NSPopover::Behavior::transient;
}

void VelkinImpl::handlePopOverBehaviorUpdate(std::optional<bool> value) {
  updatePopoverBehavior(value.value_or(false));
}

void VelkinImpl::toggleMenu() {
  isDismissingPopUpMenu = true;
  if (isShowingPopUpMenu) {
    debugLog("Clear menu");
    isShowingPopUpMenu = false;
    menuBarItem->menu = nullptr;
    return;
  }
  debugLog(std::string("Set menu menuBar is showing ") + (menuBarItem->menu ? "true" : "false"));
  isShowingPopUpMenu = true;
  menuBarItem->popUpStatusItemMenu(menu);
}

void VelkinImpl::menuDidClose(platform::NSMenu&) {
  isShowingPopUpMenu = false;
  isDismissingPopUpMenu = false;
}

void VelkinImpl::togglePopover() {
  const auto last = defaults.lastVisibleWebView();
  const bool useLargeSize = last == WebViewSwitchType::onboarding ||
                            last == WebViewSwitchType::releaseNotes || !defaults.onboardingCompleted();
  isInitialLaunch = false;
  if (popover->isShown()) {
    popover->performClose();
  } else {
    showPopover(useLargeSize);
  }
}

void VelkinImpl::didUseGlobalHotKeys() {
  debugLog("Q$: didUseGlobalHotKeys");
  togglePopover();
}

void VelkinImpl::handleSearchBarDelegate() {
  debugLog("Q$: handleSearchBarDelegate");
  if (searchBarHostingController) {
    handleEsc();
    isSearchBarOpen_ = false;
  } else {
    switchWebViews(WebViewSwitchType::search);
    isSearchBarOpen_ = true;
  }
}

void VelkinImpl::showView(WebViewSwitchType type) {
  if (type == WebViewSwitchType::search) {
    if (!searchBarHostingController) handleSearchBarDelegate();
    return;
  }
  // A switch to the view that is on show would fall back on chat.
  if (type != defaults.lastVisibleWebView()) switchWebViews(type);
  if (!popover->isShown()) togglePopover();
}

void VelkinImpl::showPopover(bool useLargeSize) {
  auto* button = menuBarItem->button();
  if (button == nullptr) return;
  if (useLargeSize) {
    popover->setContentSize({rawValue(AppearanceWidth::medium), rawValue(AppearanceHeight::medium)});
  } else {
    popover->setContentSize({windowSize(fromRawValue<AppearanceWidth>(defaults.webViewWidth())),
                             windowSize(fromRawValue<AppearanceHeight>(defaults.webViewHeight()))});
  }
  popover->show(button->bounds(), *button, platform::NSRectEdge::maxY);
  // Whoever opens the popover wants to write.
  if (!isFindingWebState->isSearching.get()) giveKeyboardToMainView();
}

void VelkinImpl::giveKeyboardToMainView() {
  // A page that isn't on show would take the keyboard when it comes to a sidebar.
  if (!isFindableView() || defaults.lastVisibleWebView() == WebViewSwitchType::markdown) return;
  currentWebView.webView->makeFirstResponder();
}

void VelkinImpl::handleEsc() {
  auto& isSearching = isFindingWebState->isSearching;
  if (isSearching.get()) {
    if (isFindableView() || hostedNotesView) {
      scriptingHelper->stopFinding("", *currentWebView.webView);
      handleWindowFindOnPage();
      giveKeyboardToMainView();
      return;
    }
    // A find bar that isn't on show holds nothing back.
    isSearching.set(false);
  }
  if (searchBarHostingController) {
    searchBarHostingController->close();
    searchBarHostingController.reset();
    return;
  }
  if (popover->isShown()) popover->performClose();
}

void VelkinImpl::handleEnter() { scriptingHelper->submitForm(currentWebView.webView); }

// Saving the page and taking its picture come with the export of pages.
void VelkinImpl::handlePrintAction() { debugLog("VelkinImpl", "handlePrintAction()", ""); }
void VelkinImpl::handleScreenCaptureAction() { debugLog("VelkinImpl", "handleScreenCaptureAction()", ""); }

void VelkinImpl::didScroll() { debugLog("VelkinImpl", "didScroll()", ""); }

void VelkinImpl::didClickReleaseNotesDone() {
  if (hostedNotesView && hostedNotesView->presentingViewController != nullptr) {
    hostedNotesView->presentingViewController->dismiss(*hostedNotesView);
  }
  // The content stays on show until the next one takes its place, and with it the button that was clicked.
  hostedNotesView.reset();
  // There is no onboarding page yet: whoever has read the notes is on board.
  defaults.set(true, UserDefault::onboardingCompleted);
  switchWebViews(WebViewSwitchType::chatgpt);
}

}  // namespace velkin
