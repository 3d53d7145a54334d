#include "Controller/WindowGeometry.h"

#include "Platform/DebugLog.h"
#include "UserData/WindowAppearance.h"
#include "Values/AppearanceFontSize.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"
#include "WebView/ActionUIView.h"

#include <memory>
#include <optional>

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

void WindowGeometry::updateWindowSize(double width, double height) {
  content_.popover->setContentSize({width, height});
  sidebars_.reset();
  WindowAppearance::didChange();
}

void WindowGeometry::stepHeight(int direction, const char* logLine) {
  debugLog(logLine);
  const auto current = windowSize(fromRawValue<AppearanceHeight>(defaults_.webViewHeight()));
  const auto next = neighbour(allAppearanceHeights, current, direction);
  if (!next) return;
  defaults_.set(*next, UserDefault::webViewHeight);
  updateWindowSize(defaults_.webViewWidth(), *next);
}

void WindowGeometry::stepWidth(int direction, const char* logLine) {
  debugLog(logLine);
  const auto current = windowSize(fromRawValue<AppearanceWidth>(defaults_.webViewWidth()));
  const auto next = neighbour(allAppearanceWidths, current, direction);
  if (!next) return;
  defaults_.set(*next, UserDefault::webViewWidth);
  updateWindowSize(*next, defaults_.webViewHeight());
}

bool WindowGeometry::isFullScreen() const {
  return fromRawValue<AppearanceHeight>(defaults_.webViewHeight()) == AppearanceHeight::full &&
         fromRawValue<AppearanceWidth>(defaults_.webViewWidth()) == AppearanceWidth::full;
}

void WindowGeometry::showExpandOverlay() {
  content_.popover->contentViewController()->addChild(
      std::make_shared<platform::NSHostingController<ActionUIView>>(
          ActionUIView{ActionCompletionType::expand}),
      {ActionUIView::size, ActionUIView::size});
}

void WindowGeometry::storeSize(double width, double height) const {
  const auto together = defaults_.together();
  defaults_.set(height, UserDefault::webViewHeight);
  defaults_.set(width, UserDefault::webViewWidth);
}

void WindowGeometry::toggleFullScreen() {
  if (isFullScreen()) {
    const auto height = rawValue(fromRawValue<AppearanceHeight>(defaults_.webViewFSToggleHeight()));
    const auto width = rawValue(fromRawValue<AppearanceWidth>(defaults_.webViewFSToggleWidth()));
    storeSize(width, height);
    updateWindowSize(width, height);
    return;
  }
  if (!content_.popover->contentViewController()) return;
  showExpandOverlay();
  constexpr double fullWidth = rawValue(AppearanceWidth::full);
  constexpr double fullHeight = rawValue(AppearanceHeight::full);
  {
    // Half of them would be no size to go back to.
    const auto together = defaults_.together();
    defaults_.set(rawValue(fromRawValue<AppearanceHeight>(defaults_.webViewHeight())),
                  UserDefault::webViewFSToggleHeight);
    defaults_.set(rawValue(fromRawValue<AppearanceWidth>(defaults_.webViewWidth())),
                  UserDefault::webViewFSToggleWidth);
    storeSize(fullWidth, fullHeight);
  }
  updateWindowSize(fullWidth, fullHeight);
}

void WindowGeometry::setZoom(double zoom) {
  defaults_.set(zoom, UserDefault::webViewZoom);
  updateCurrentZoom(zoom);
  sidebars_.setZoom(zoom);
  WindowAppearance::didChange();
}

void WindowGeometry::stepZoom(int direction, const char* logLine) {
  debugLog(logLine);
  if (const auto next = neighbour(allAppearanceFontSizes, defaults_.webViewZoom(), direction)) setZoom(*next);
}

void WindowGeometry::updateCurrentZoom(double zoom) { content_.currentWebView.webView->setPageZoom(zoom); }

}  // namespace velkin
