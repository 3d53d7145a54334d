#include "Controller/ViewSwitcher.h"

#include "Helpers/ViewAddresses.h"
#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/NSBundle.h"
#include "Platform/Platform.h"
#include "Values/AppearanceFontSize.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace velkin {

using platform::debugLog;
using enum WebViewSwitchType;

namespace {

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

/// 0 for a text that is no number.
int buildNumber() {
  const auto& text = platform::unwrap(platform::NSBundle::main().version);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

}  // namespace

void ViewSwitcher::showFirst() {
  const int build = buildNumber();
  if (defaults_.releaseNoteBuildVersion() == build) {
    switchTo(chatgpt);
    return;
  }
  switchTo(releaseNotes);
  defaults_.set(std::int64_t{build}, UserDefault::releaseNoteBuildVersion);
}

void ViewSwitcher::switchTo(WebViewSwitchType view) {
  const auto last = defaults_.lastVisibleWebView();
  const bool isToggle = defaults_.hemingwayEnabled() && view != last;
  if (last == chatgpt && view == chatgpt && !rooms_.content.isInitialLaunch) return;
  // Each write waits for the disk, and the page for the write.
  const auto together = defaults_.together();
  const bool wasShown = rooms_.statusItem.closePopover();
  if (view == search) {
    // The popover keeps its content behind the panel.
    if (rooms_.searchPanel.open()) defaults_.set(rawValue(search), UserDefault::lastVisibleWebView);
    return;
  }
  rooms_.content.forgetHosts();
  switch (view) {
    case onboarding:
      showPlace(onboarding, rooms_.views.onboarding());
      rooms_.geometry.updateWindowSize(rawValue(AppearanceWidth::medium), rawValue(AppearanceHeight::medium));
      return;
    case releaseNotes:
      rooms_.content.show(rooms_.views.releaseNotes());
      note(releaseNotes);
      return;
    case editUrls:
      showPlace(editUrls, rooms_.views.editUrls());
      return;
    default:
      showPage(view, isToggle);
      if (wasShown) rooms_.statusItem.showPopover(false);
  }
}

void ViewSwitcher::showPage(WebViewSwitchType view, bool isToggle) {
  auto& content = rooms_.content;
  auto& state = *content.sharedState;
  const auto& chat = content.pages[chatgpt];
  if (view == chatgpt) {
    state.isChatting.set(false);
    // The service's pages don't stay alive beyond this time.
    if (defaults_.hasBeenThreeHoursSinceLGPTVisible()) {
      chat.webView->load(platform::URLRequest{getUrl(chatgpt)});
    }
    defaults_.set(platform::now(), UserDefault::lastTimeChatGPTVisible);
    content.currentWebView = chat;
  } else {
    // What comes to the main place leaves its sidebar. Chat's sidebar stays beside other views, and goes when
    // chat itself takes the main place.
    state.sidebarFlag(view)->set(false);
    state.isChatting.set(isToggle && state.isChatting.get());
    if (view == markdown) {
      content.popover->setContentViewController(nullptr);
      defaults_.set(rawValue(markdown), UserDefault::lastVisibleWebView);
    }
    if (view != markdown || !isToggle) content.currentWebView = isToggle ? content.pages[view] : chat;
  }
  chat.webView->setPageZoom(zoomAbove(defaults_.webViewZoom()));
  showContainer(isToggle ? view : chatgpt, isToggle);
}

void ViewSwitcher::showContainer(WebViewSwitchType shown, bool isToggle) {
  // Stored first: the container reads what is on show while it is built.
  note(shown);
  defaults_.set(isToggle, UserDefault::isAlternateViewVisible);
  rooms_.content.show(rooms_.views.container());
}

void ViewSwitcher::note(WebViewSwitchType view) {
  rooms_.content.view = view;
  defaults_.set(rawValue(view), UserDefault::lastVisibleWebView);
}

void ViewSwitcher::showPlace(WebViewSwitchType view, std::shared_ptr<platform::NSViewController> place) {
  note(view);
  rooms_.content.popover->setContentViewController(std::move(place));
}

void ViewSwitcher::switchToNumber(int number) {
  debugLog("switchWebViews click!");
  switchTo(fromRawValue<WebViewSwitchType>(number).value_or(chatgpt));
}

void ViewSwitcher::bringUp(WebViewSwitchType view) {
  // A switch to the view that is on show would fall back on chat.
  if (view != defaults_.lastVisibleWebView()) switchTo(view);
  if (!rooms_.content.popover->isShown()) rooms_.statusItem.togglePopover();
}

void ViewSwitcher::updateCurrentWebView() {
  const auto last = defaults_.lastVisibleWebView();
  if (isWebView(last)) rooms_.content.currentWebView = rooms_.content.pages[last];
}

void ViewSwitcher::showGroup(int number) {
  constexpr std::array keys = {UserDefault::sideBarGroup1, UserDefault::sideBarGroup2,
                               UserDefault::sideBarGroup3, UserDefault::sideBarGroup4};
  std::optional<SidebarGroup> group;
  if (number >= 1 && number <= static_cast<int>(keys.size())) {
    group = defaults_.getSidebarGroup(keys[static_cast<std::size_t>(number) - 1]);
  }
  if (!group) {
    switchToNumber(rawValue(chatgpt));
    return;
  }
  rooms_.sidebars.close();
  // A switch to the view that is on show would fall back on chat.
  if (group->mainView != defaults_.lastVisibleWebView()) switchToNumber(rawValue(group->mainView));
  rooms_.sidebars.open(group->sideBar1);
  rooms_.sidebars.open(group->sideBar2);
  if (group->isFullScreen && !rooms_.geometry.isFullScreen()) rooms_.geometry.toggleFullScreen();
}

void ViewSwitcher::toggleSearchBar(const std::function<void()>& escape) {
  debugLog("Q$: handleSearchBarDelegate");
  const bool isOpen = rooms_.searchPanel.panel() != nullptr;
  isOpen ? escape() : switchTo(search);
  rooms_.searchPanel.isSearchBarOpen = !isOpen;
}

void ViewSwitcher::releaseNotesAreRead() {
  auto& notes = rooms_.content.hostedNotesView;
  if (notes && notes->presentingViewController != nullptr) notes->presentingViewController->dismiss(*notes);
  // The content stays on show until the next one takes its place, and with it the button that was clicked.
  notes.reset();
  const bool wasShown = rooms_.content.popover->isShown();
  if (defaults_.onboardingCompleted()) {
    switchTo(chatgpt);
    return;
  }
  switchTo(onboarding);
  // The switch closed what the reader was in the middle of.
  if (wasShown) rooms_.statusItem.showPopover(true);
}

void ViewSwitcher::onboardingIsDone() {
  defaults_.set(true, UserDefault::onboardingCompleted);
  const int build = buildNumber();
  if (defaults_.releaseNoteBuildVersion() == build) {
    switchTo(chatgpt);
    if (!rooms_.content.popover->isShown()) rooms_.statusItem.showPopover(false);
    return;
  }
  switchTo(releaseNotes);
  defaults_.set(std::int64_t{build}, UserDefault::releaseNoteBuildVersion);
  if (!rooms_.content.popover->isShown()) rooms_.statusItem.showPopover(true);
}

void ViewSwitcher::backToChat() {
  // Without the additional views there is none to stand beside chat.
  if (!defaults_.hemingwayEnabled()) rooms_.sidebars.close();
  switchTo(chatgpt);
}

}  // namespace velkin
