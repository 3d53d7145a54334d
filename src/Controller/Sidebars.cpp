#include "Controller/Sidebars.h"

#include "Platform/DebugLog.h"

#include <algorithm>
#include <array>

namespace velkin {

using enum WebViewSwitchType;

namespace {

/// The order in which sidebars are built again, and the one in which they are zoomed.
constexpr std::array<WebViewSwitchType, webViewCount> resetOrder = {bard,   bitbucket, chatgpt,
                                                                    gitlab, hemingway, jira};
constexpr std::array<WebViewSwitchType, webViewCount> zoomOrder = {chatgpt, gitlab,    jira,
                                                                   bard,    bitbucket, hemingway};

}  // namespace

bool Sidebars::canHave(WebViewSwitchType view) const {
  const auto last = defaults_.lastVisibleWebView();
  const bool canHaveSidebars =
      view == markdown ? content_.isFindableView() : content_.isFindableOrMarkdownView();
  return canHaveSidebars && last != releaseNotes && last != view;
}

bool Sidebars::areOnShow() const {
  if (!content_.hostedWebView) return false;
  const auto& container = content_.hostedWebView->rootView;
  return container.isWideEnoughToShowChat() || container.isTallEnoughToShowChat();
}

void Sidebars::toggle(WebViewSwitchType view) {
  if (!canHave(view)) return;
  auto& flag = *content_.sharedState->sidebarFlag(view);
  flag.set(!flag.get());
  if (!areOnShow()) return;
  // Who opens a place to write wants to write.
  if (!flag.get()) {
    content_.giveKeyboardToMainView();
  } else if (view != markdown) {
    content_.pages[view].webView->makeFirstResponder();
  } else if (content_.scratchpad) {
    content_.scratchpad->takeKeyboard();
  }
}

void Sidebars::close() {
  for (const auto view : resetOrder) content_.sharedState->sidebarFlag(view)->set(false);
  content_.sharedState->isMarking.set(false);
}

void Sidebars::reset() {
  std::array<bool, webViewCount> wasOpen{};
  std::ranges::transform(resetOrder, wasOpen.begin(),
                         [this](auto view) { return content_.sharedState->sidebarFlag(view)->get(); });
  for (std::size_t i = 0; i < resetOrder.size(); ++i) {
    if (!wasOpen[i] || !canHave(resetOrder[i])) continue;
    // Off and on again: the container draws itself anew at the new size.
    auto& flag = *content_.sharedState->sidebarFlag(resetOrder[i]);
    flag.set(false);
    flag.set(true);
  }
  // The scratchpad keeps its flag, and with it what is written in it; it too is drawn at the new size.
  if (content_.sharedState->isMarking.get()) content_.sharedState->notifyObservers();
}

void Sidebars::open(std::optional<WebViewSwitchType> view) {
  if (!view) return;
  if (auto* flag = content_.sharedState->sidebarFlag(*view)) {
    flag->set(true);
  } else {
    platform::debugLog("VelkinImpl", "setSidebarsForGroup(_:)", "Error: Should not happen");
  }
}

void Sidebars::setZoom(double zoom) {
  for (const auto view : zoomOrder) {
    if (content_.sharedState->sidebarFlag(view)->get()) content_.pages[view].webView->setPageZoom(zoom);
  }
}

}  // namespace velkin
