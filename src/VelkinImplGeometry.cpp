#include "Appearance/AppearanceFontSize.h"
#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
#include "Platform/DebugLog.h"
#include "VelkinImpl.h"
#include "WebView/ActionUIView.h"

#include <array>

namespace velkin {

using platform::debugLog;

namespace {

/// The value beside `current` on the scale; nothing at its end, and for a value that isn't on it.
template <class Scale>
std::optional<double> neighbour(const Scale& scale, double current, int direction) {
  for (std::size_t i = 0; i < scale.size(); ++i) {
    if (rawValue(scale[i]) != current) continue;
    const auto next = static_cast<std::ptrdiff_t>(i) + direction;
    if (next < 0 || next >= static_cast<std::ptrdiff_t>(scale.size())) return std::nullopt;
    return rawValue(scale[static_cast<std::size_t>(next)]);
  }
  return std::nullopt;
}

}  // namespace

void VelkinImpl::updateWebViewWindowSize(double width, double height) {
  popover->setContentSize({width, height});
  resetSideBarViews();
}

void VelkinImpl::stepHeight(int direction, const char* logLine) {
  debugLog(logLine);
  const auto current = windowSize(fromRawValue<AppearanceHeight>(defaults.webViewHeight()));
  const auto next = neighbour(allAppearanceHeights, current, direction);
  if (!next) return;
  defaults.set(*next, UserDefault::webViewHeight);
  updateWebViewWindowSize(defaults.webViewWidth(), *next);
}

void VelkinImpl::stepWidth(int direction, const char* logLine) {
  debugLog(logLine);
  const auto current = windowSize(fromRawValue<AppearanceWidth>(defaults.webViewWidth()));
  const auto next = neighbour(allAppearanceWidths, current, direction);
  if (!next) return;
  defaults.set(*next, UserDefault::webViewWidth);
  updateWebViewWindowSize(*next, defaults.webViewHeight());
}

void VelkinImpl::handleWindowTaller() { stepHeight(-1, "handleWindowShorter!"); }
void VelkinImpl::handleWindowShorter() { stepHeight(+1, "handleWindowTaller!"); }
void VelkinImpl::handleWindowWider() { stepWidth(-1, "handleWindowWider!"); }
void VelkinImpl::handleWindowSlimmer() { stepWidth(+1, "handleWindowSlimmer!"); }

bool VelkinImpl::getIsInFullScreenMode() const {
  return fromRawValue<AppearanceHeight>(defaults.webViewHeight()) == AppearanceHeight::full &&
         fromRawValue<AppearanceWidth>(defaults.webViewWidth()) == AppearanceWidth::full;
}

void VelkinImpl::showExpandOverlay() {
  popover->contentViewController()->addChild(std::make_shared<platform::NSHostingController<ActionUIView>>(
                                                 ActionUIView{ActionCompletionType::expand}),
                                             {ActionUIView::size, ActionUIView::size});
}

void VelkinImpl::storeSize(double width, double height) const {
  const auto together = defaults.together();
  defaults.set(height, UserDefault::webViewHeight);
  defaults.set(width, UserDefault::webViewWidth);
}

void VelkinImpl::handleWindowFullScreen() {
  if (getIsInFullScreenMode()) {
    const auto height = rawValue(fromRawValue<AppearanceHeight>(defaults.webViewFSToggleHeight()));
    const auto width = rawValue(fromRawValue<AppearanceWidth>(defaults.webViewFSToggleWidth()));
    storeSize(width, height);
    updateWebViewWindowSize(width, height);
    return;
  }
  if (!popover->contentViewController()) return;
  showExpandOverlay();
  constexpr double fullWidth = rawValue(AppearanceWidth::full);
  constexpr double fullHeight = rawValue(AppearanceHeight::full);
  {
    // Half of them would be no size to go back to.
    const auto together = defaults.together();
    defaults.set(rawValue(fromRawValue<AppearanceHeight>(defaults.webViewHeight())),
                 UserDefault::webViewFSToggleHeight);
    defaults.set(rawValue(fromRawValue<AppearanceWidth>(defaults.webViewWidth())),
                 UserDefault::webViewFSToggleWidth);
    storeSize(fullWidth, fullHeight);
  }
  updateWebViewWindowSize(fullWidth, fullHeight);
}

void VelkinImpl::setZoom(double zoom) {
  defaults.set(zoom, UserDefault::webViewZoom);
  updateCurrentWebViewZoomLevel(zoom);
  updateSideBarZoomLevel(zoom);
}

void VelkinImpl::stepZoom(int direction, const char* logLine) {
  debugLog(logLine);
  if (const auto next = neighbour(allAppearanceFontSizes, defaults.webViewZoom(), direction)) setZoom(*next);
}

void VelkinImpl::handleZoomIn() { stepZoom(-1, "handleZoomIn!"); }
void VelkinImpl::handleZoomOut() { stepZoom(+1, "handleZoomOut!"); }

void VelkinImpl::handleZoomActual() {
  debugLog("handleZoomActual!");
  setZoom(rawValue(AppearanceFontSize::normal));
}

void VelkinImpl::updateCurrentWebViewZoomLevel(double zoom) { currentWebView.webView->setPageZoom(zoom); }

void VelkinImpl::updateSideBarZoomLevel(double zoom) {
  using enum WebViewSwitchType;
  for (const auto type : {chatgpt, gitlab, jira, bard, bitbucket, hemingway}) {
    if (flagOf(type)->get()) webViewOf(type).webView->setPageZoom(zoom);
  }
}

void VelkinImpl::handlePageUp() {
  debugLog("handlePageUp!");
  currentWebView.webView->scrollPageUp();
}

void VelkinImpl::handlePageDown() {
  debugLog("handlePageDown!");
  currentWebView.webView->scrollPageDown();
}

void VelkinImpl::handleBack() { currentWebView.webView->goBack(); }
void VelkinImpl::handleForward() { currentWebView.webView->goForward(); }

void VelkinImpl::handleReloadFromOrigin() {
  debugLog("Reload From Origin click!");
  const auto last = defaults.lastVisibleWebView();
  // The onboarding has no address of its own to go back to.
  if (last == WebViewSwitchType::onboarding) return;
  currentWebView.webView->load(platform::URLRequest{getUrl(last)});
  scriptingHelper->pageReloaded();
}

}  // namespace velkin
