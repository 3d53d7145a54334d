#include "WebView/FindableWebView.h"

#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
#include "Helpers/UserDefaultsHelper.h"

namespace velkin {

using platform::Divider;
using platform::infinity;
using platform::View;
using platform::when;

namespace {

constexpr platform::StackOptions tight = {.spacing = 0, .alignment = platform::Alignment::fill};

double sideBarSize(double length, double share) {
  return length <= 2 * FindableWebView::minChatSize ? FindableWebView::minChatSize : length * share;
}

View filling(const View& view) { return view.frame({.maxWidth = infinity, .maxHeight = infinity}); }

}  // namespace

bool FindableWebView::isSideBarViewing() const {
  return sharedState->isBarding.get() || sharedState->isBitBucketing.get() || sharedState->isChatting.get() ||
         sharedState->isGitLabing.get() || sharedState->isHemingwaying.get() || sharedState->isJiring.get() ||
         sharedState->isMarking.get();
}

bool FindableWebView::isWideEnoughToShowChat() const {
  return UserDefaultsHelper().webViewWidth() > rawValue(AppearanceWidth::medium);
}

bool FindableWebView::isTallEnoughToShowChat() const {
  return UserDefaultsHelper().webViewHeight() > rawValue(AppearanceHeight::medium);
}

View FindableWebView::findableWebView() const {
  return filling(VStack(tight, {when(webView.has_value(), [&] { return View(*webView); })}));
}

// The dividers belong to their sidebar and stand where they always stand, whichever sidebars are open.
View FindableWebView::sideBySide() const {
  const double width = sideBarSize(UserDefaultsHelper().webViewWidth(), maxSideBarWidth);
  const auto sidebar = [&](const WebView& view) {
    return View(view).frame({.width = width, .maxHeight = infinity});
  };
  const auto before = [&](bool isOpen, const WebView& view) {
    return when(isOpen, [&] { return platform::Group({Divider(), sidebar(view)}); });
  };
  const auto after = [&](bool isOpen, const WebView& view) {
    return when(isOpen, [&] { return platform::Group({sidebar(view), Divider()}); });
  };
  return HStack(
      tight,
      {after(sharedState->isBarding.get(), bardWebView), after(sharedState->isChatting.get(), chatWebView),
       before(sharedState->isHemingwaying.get(), hemingwayWebView),
       after(sharedState->isBitBucketing.get(), bitBucketWebView),
       before(sharedState->isGitLabing.get(), gitLabWebView),
       before(sharedState->isJiring.get(), jiraWebView), filling(VStack(tight, {findableWebView()}))});
}

View FindableWebView::oneAboveTheOther() const {
  const double height = sideBarSize(UserDefaultsHelper().webViewHeight(), maxSideBarHeight);
  const auto sidebar = [&](const WebView& view) {
    return View(view).frame({.height = height, .maxWidth = infinity});
  };
  const auto before = [&](bool isOpen, const WebView& view) {
    return when(isOpen, [&] { return platform::Group({Divider(), sidebar(view)}); });
  };
  const auto after = [&](bool isOpen, const WebView& view) {
    return when(isOpen, [&] { return platform::Group({sidebar(view), Divider()}); });
  };
  return VStack(tight, {findableWebView(), after(sharedState->isChatting.get(), chatWebView),
                        after(sharedState->isBarding.get(), bardWebView),
                        before(sharedState->isHemingwaying.get(), hemingwayWebView),
                        after(sharedState->isBitBucketing.get(), bitBucketWebView),
                        before(sharedState->isGitLabing.get(), gitLabWebView),
                        before(sharedState->isJiring.get(), jiraWebView)});
}

View FindableWebView::body() const {
  if (isSideBarViewing() && isWideEnoughToShowChat()) return VStack(tight, {sideBySide()});
  if (isSideBarViewing() && isTallEnoughToShowChat()) return VStack(tight, {oneAboveTheOther()});
  return VStack(tight, {findableWebView()});
}

}  // namespace velkin
