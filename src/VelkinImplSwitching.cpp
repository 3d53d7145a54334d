#include "Appearance/AppearanceFontSize.h"
#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/NSScreen.h"
#include "SearchBar/SearchBarView.h"
#include "VelkinImpl.h"

#include <algorithm>
#include <array>
#include <string>

namespace velkin {

using platform::debugLog;
using enum WebViewSwitchType;

namespace {

/// The web views in the order in which their sidebars are built again.
constexpr std::array webViewTypes = {bard, bitbucket, chatgpt, gitlab, hemingway, jira};

constexpr double searchPanelHeight = 200;

/// The step above the stored zoom, which chat has until its new host applies the stored one.
double zoomAbove(double stored) {
  constexpr std::size_t notOnTheScale = 4;
  const auto found = std::find_if(allAppearanceFontSizes.begin(), allAppearanceFontSizes.end(),
                                  [&](auto size) { return rawValue(size) == stored; });
  const auto index = found == allAppearanceFontSizes.end()
                         ? notOnTheScale
                         : static_cast<std::size_t>(found - allAppearanceFontSizes.begin());
  if (index == 0) platform::fatalError("Index out of range");
  return rawValue(allAppearanceFontSizes[index - 1]);
}

}  // namespace

const WebView& VelkinImpl::webViewOf(WebViewSwitchType type) const {
  switch (type) {
    case bard:
      return bardWebView;
    case bitbucket:
      return bitbucketWebView;
    case gitlab:
      return gitlabWebView;
    case hemingway:
      return hemingwayWebView;
    case jira:
      return jiraWebView;
    default:
      return chatWebView;
  }
}

VelkinImpl::Flag* VelkinImpl::flagOf(WebViewSwitchType type) const {
  auto& state = *isFindingWebState;
  switch (type) {
    case bard:
      return &state.isBarding;
    case bitbucket:
      return &state.isBitBucketing;
    case chatgpt:
      return &state.isChatting;
    case gitlab:
      return &state.isGitLabing;
    case hemingway:
      return &state.isHemingwaying;
    case jira:
      return &state.isJiring;
    case markdown:
      return &state.isMarking;
    default:
      return nullptr;
  }
}

void VelkinImpl::switchWebViews(WebViewSwitchType type) {
  const auto last = defaults.lastVisibleWebView();
  const bool isToggle = defaults.hemingwayEnabled() && type != last;
  if (last == chatgpt && type == chatgpt && !isInitialLaunch) return;
  // Each write waits for the disk, and the page for the write.
  const auto together = defaults.together();
  const bool wasShown = popover->isShown();
  if (wasShown) popover->performClose();
  hostedNotesView.reset();
  hostedWebView.reset();
  switch (type) {
    case onboarding:
      showPlace(onboarding, "Onboarding");
      updateWebViewWindowSize(rawValue(AppearanceWidth::medium), rawValue(AppearanceHeight::medium));
      return;
    case releaseNotes:
      showReleaseNotes();
      return;
    case editUrls:
      showPlace(editUrls, "Edit URLs");
      return;
    case search:
      showSearchPanel();
      return;
    default:
      showPage(type, isToggle);
      if (wasShown) showPopover(false);
  }
}

void VelkinImpl::showPage(WebViewSwitchType type, bool isToggle) {
  auto& state = *isFindingWebState;
  if (type == chatgpt) {
    state.isChatting.set(false);
    // The service's pages don't stay alive beyond this time.
    if (defaults.hasBeenThreeHoursSinceLGPTVisible()) {
      chatWebView.webView->load(platform::URLRequest{getUrl(chatgpt)});
    }
    defaults.set(platform::now(), UserDefault::lastTimeChatGPTVisible);
    currentWebView = chatWebView;
  } else {
    // What comes to the main place leaves its sidebar. Chat's sidebar stays beside other views, and goes when
    // chat itself takes the main place.
    flagOf(type)->set(false);
    state.isChatting.set(isToggle && state.isChatting.get());
    if (type == markdown) {
      popover->setContentViewController(nullptr);
      defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
    }
    if (type != markdown || !isToggle) currentWebView = isToggle ? webViewOf(type) : chatWebView;
  }
  chatWebView.webView->setPageZoom(zoomAbove(defaults.webViewZoom()));
  showContainer(isToggle ? type : chatgpt, isToggle);
}

void VelkinImpl::showContainer(WebViewSwitchType shown, bool isToggle) {
  // Stored first: the container reads what is on show while it is built.
  defaults.set(rawValue(shown), UserDefault::lastVisibleWebView);
  defaults.set(isToggle, UserDefault::isAlternateViewVisible);
  hostedWebView = std::make_shared<platform::NSHostingController<FindableWebView>>(
      FindableWebView{.menuDelegate = this,
                      .scripting = scriptingHelper,
                      .webView = currentWebView,
                      .bardWebView = bardWebView,
                      .bitBucketWebView = bitbucketWebView,
                      .chatWebView = chatWebView,
                      .gitLabWebView = gitlabWebView,
                      .hemingwayWebView = hemingwayWebView,
                      .jiraWebView = jiraWebView,
                      .markdownView = {},
                      .sharedState = isFindingWebState});
  popover->setContentViewController(hostedWebView);
  giveKeyboardToMainView();
}

void VelkinImpl::showReleaseNotes() {
  hostedNotesView = std::make_shared<platform::NSHostingController<ReleaseNotesUIView>>(
      ReleaseNotesUIView{this, isFindingWebState});
  popover->setContentViewController(hostedNotesView);
  defaults.set(rawValue(releaseNotes), UserDefault::lastVisibleWebView);
}

void VelkinImpl::showPlace(WebViewSwitchType type, const char* title) {
  defaults.set(rawValue(type), UserDefault::lastVisibleWebView);
  popover->setContentViewController(std::make_shared<PlaceController>(PagePlace{title}));
}

void VelkinImpl::showSearchPanel() {
  const auto screen = platform::NSScreen::main();
  if (!screen) return;
  const double width = searchBarSize(AppearanceWidth::medium);
  const auto& frame = screen->frame;
  searchBarHostingController =
      platform::NSPanel::make({{frame.midX() / 2, frame.midY()}, {width, searchPanelHeight}},
                              platform::NSPanel::nonactivatingPanel | platform::NSPanel::titled);
  auto& panel = *searchBarHostingController;
  panel.setFrameOrigin({frame.midX() - width / 2, frame.midY() * 1.3 - searchPanelHeight / 2});
  panel.setContentViewController(
      std::make_shared<platform::NSHostingController<SearchBarView>>(SearchBarView{}));
  panel.setFloatingPanel(true);
  panel.makeKeyAndOrderFront();
  defaults.set(rawValue(search), UserDefault::lastVisibleWebView);
}

void VelkinImpl::switchWebViewsClicked(int number) {
  debugLog("switchWebViews click!");
  switchWebViews(fromRawValue<WebViewSwitchType>(number).value_or(chatgpt));
}

void VelkinImpl::updateCurrentWebView() {
  const auto last = defaults.lastVisibleWebView();
  if (isWebView(last)) currentWebView = webViewOf(last);
}

bool VelkinImpl::isFindableView() const { return hostedWebView != nullptr; }

bool VelkinImpl::isFindableOrMarkdownView() const {
  return isFindableView() || defaults.lastVisibleWebView() == markdown;
}

void VelkinImpl::handleWindowFindOnPage() {
  if (!isFindableView() && !hostedNotesView) return;
  auto& isSearching = isFindingWebState->isSearching;
  isSearching.set(!isSearching.get());
}

void VelkinImpl::toggleSideBar(WebViewSwitchType type) {
  const auto last = defaults.lastVisibleWebView();
  const bool canHaveSideBars = type == markdown ? isFindableView() : isFindableOrMarkdownView();
  // The view in the main place never opens beside itself.
  if (!canHaveSideBars || last == releaseNotes || last == type) return;
  auto& flag = *flagOf(type);
  flag.set(!flag.get());
}

void VelkinImpl::handleWindowBardOnPage() { toggleSideBar(bard); }
void VelkinImpl::handleWindowBitBucketOnPage() { toggleSideBar(bitbucket); }
void VelkinImpl::handleWindowChatOnPage() { toggleSideBar(chatgpt); }
void VelkinImpl::handleWindowGitLabOnPage() { toggleSideBar(gitlab); }
void VelkinImpl::handleWindowHemingwayOnPage() { toggleSideBar(hemingway); }
void VelkinImpl::handleWindowJiraOnPage() { toggleSideBar(jira); }
void VelkinImpl::handleWindowMarkdownOnPage() { toggleSideBar(markdown); }

void VelkinImpl::closeSideBarViews() {
  for (const auto type : webViewTypes) flagOf(type)->set(false);
  flagOf(markdown)->set(false);
}

void VelkinImpl::resetSideBarViews() {
  std::array<bool, webViewTypes.size()> wasOpen{};
  std::transform(webViewTypes.begin(), webViewTypes.end(), wasOpen.begin(),
                 [this](auto type) { return flagOf(type)->get(); });
  for (std::size_t i = 0; i < webViewTypes.size(); ++i) {
    if (!wasOpen[i]) continue;
    // Off and on again: the container draws itself anew at the new size.
    toggleSideBar(webViewTypes[i]);
    toggleSideBar(webViewTypes[i]);
  }
}

void VelkinImpl::setSidebarsForGroup(std::optional<WebViewSwitchType> type) {
  if (!type) return;
  if (auto* flag = flagOf(*type)) {
    flag->set(true);
  } else {
    debugLog("VelkinImpl", "setSidebarsForGroup(_:)", "Error: Should not happen");
  }
}

void VelkinImpl::handleSideGroupClick(int number) {
  constexpr std::array keys = {UserDefault::sideBarGroup1, UserDefault::sideBarGroup2,
                               UserDefault::sideBarGroup3, UserDefault::sideBarGroup4};
  std::optional<SidebarGroup> group;
  if (number >= 1 && number <= static_cast<int>(keys.size())) {
    group = defaults.getSidebarGroup(keys[static_cast<std::size_t>(number) - 1]);
  }
  if (!group) {
    switchWebViewsClicked(rawValue(chatgpt));
    return;
  }
  closeSideBarViews();
  // A switch to the view that is on show would fall back on chat.
  if (group->mainView != defaults.lastVisibleWebView()) switchWebViewsClicked(rawValue(group->mainView));
  setSidebarsForGroup(group->sideBar1);
  setSidebarsForGroup(group->sideBar2);
  if (group->isFullScreen && !getIsInFullScreenMode()) handleWindowFullScreen();
}

}  // namespace velkin
