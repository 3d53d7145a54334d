#include "VelkinImpl.h"

#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
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
      menu(menuBarItem->menu ? menuBarItem->menu : std::make_shared<platform::NSMenu>()) {
  currentWebView.webView->uiDelegate = this;
  updatePopoverBehavior(false);
  setUpStatusItem();
  isInitialLaunch = true;
  showFirstView();
  isFindingWebState->showToolbar.set(defaults.showToolBar());
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
}

void VelkinImpl::handleEsc() {
  if (popover->isShown()) popover->performClose();
}

void VelkinImpl::didScroll() { debugLog("VelkinImpl", "didScroll()", ""); }

const WebView& VelkinImpl::webViewOf(WebViewSwitchType type) const {
  switch (type) {
    case WebViewSwitchType::bard:
      return bardWebView;
    case WebViewSwitchType::bitbucket:
      return bitbucketWebView;
    case WebViewSwitchType::gitlab:
      return gitlabWebView;
    case WebViewSwitchType::hemingway:
      return hemingwayWebView;
    case WebViewSwitchType::jira:
      return jiraWebView;
    default:
      return chatWebView;
  }
}

void VelkinImpl::switchWebViews(WebViewSwitchType type) {
  const auto last = defaults.lastVisibleWebView();
  const bool isChatAgain = last == WebViewSwitchType::chatgpt && type == WebViewSwitchType::chatgpt;
  if (isChatAgain && !isInitialLaunch) return;
  const bool wasShown = popover->isShown();
  if (wasShown) popover->performClose();
  hostedNotesView.reset();
  hostedWebView.reset();
  if (type == WebViewSwitchType::releaseNotes) {
    showReleaseNotes();
    return;
  }
  showPage(type);
  if (wasShown) showPopover(false);
}

void VelkinImpl::showReleaseNotes() {
  hostedNotesView = std::make_shared<platform::NSHostingController<ReleaseNotesUIView>>(
      ReleaseNotesUIView{this, isFindingWebState});
  popover->setContentViewController(hostedNotesView);
  defaults.set(std::int64_t{rawValue(WebViewSwitchType::releaseNotes)}, UserDefault::lastVisibleWebView);
}

void VelkinImpl::showPage(WebViewSwitchType type) {
  const bool isToggle = defaults.hemingwayEnabled() && type != defaults.lastVisibleWebView();
  if (type == WebViewSwitchType::chatgpt) {
    // The service's pages don't stay alive beyond this time.
    if (defaults.hasBeenThreeHoursSinceLGPTVisible()) {
      chatWebView.webView->load(platform::URLRequest{getUrl(WebViewSwitchType::chatgpt)});
    }
    defaults.set(platform::now(), UserDefault::lastTimeChatGPTVisible);
  }
  const auto shown = isToggle ? type : WebViewSwitchType::chatgpt;
  currentWebView = webViewOf(shown);
  hostedWebView = std::make_shared<platform::NSHostingController<FindableWebView>>(
      FindableWebView{currentWebView, bardWebView, bitbucketWebView, chatWebView, gitlabWebView,
                      hemingwayWebView, jiraWebView, isFindingWebState});
  popover->setContentViewController(hostedWebView);
  defaults.set(std::int64_t{rawValue(shown)}, UserDefault::lastVisibleWebView);
  defaults.set(isToggle, UserDefault::isAlternateViewVisible);
}

void VelkinImpl::stickyClicked() {
  auto& item = *menuBarHelper().stickyMenuItem;
  const bool isOn = item.state() == NSMenuItem::State::off;
  item.setState(isOn ? NSMenuItem::State::on : NSMenuItem::State::off);
  debugLog("VelkinImpl", "stickyClicked()", isOn ? "on" : "off");
  defaults.set(isOn, UserDefault::stickyMenu);
  updatePopoverBehavior(false);
}

void VelkinImpl::reloadClicked() {
  debugLog("Reload click!");
  platform::DispatchQueue::main().async([webView = currentWebView.webView] { webView->reload(); });
}

void VelkinImpl::openClicked() {
  debugLog("Open click!");
  if (const auto url = currentWebView.webView->url()) platform::NSWorkspace::shared().open(*url);
}

void VelkinImpl::quitClicked() {
  debugLog("Quit click!");
  platform::NSApp().exit(0);
}

void VelkinImpl::didClickReleaseNotesDone() {
  if (hostedNotesView && hostedNotesView->presentingViewController != nullptr) {
    hostedNotesView->presentingViewController->dismiss(*hostedNotesView);
  }
  // The content stays on show until the next one takes its place, and with it the button that was clicked.
  hostedNotesView.reset();
  switchWebViews(WebViewSwitchType::chatgpt);
}

}  // namespace velkin
