#include "WebView/FindableWebView.h"

#include "Appearance/AppearanceHeight.h"
#include "Appearance/AppearanceWidth.h"
#include "Helpers/UserDefaultsHelper.h"
#include "WebView/FindTextBarUIView.h"

namespace velkin {

using platform::Divider;
using platform::Frame;
using platform::infinity;
using platform::View;
using platform::Views;
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

bool FindableWebView::isMarkdownMainView() const {
  return UserDefaultsHelper().lastVisibleWebView() == WebViewSwitchType::markdown;
}

View FindableWebView::findBar() const {
  // Each time the bar comes, its field takes the keyboard.
  return View(
             FindTextBarUIView{
                 .shouldFocus = isFind.binding(),
                 .isPrevNextButtonDisabled = isPrevNextButtonDisabled.binding(),
                 .isNotFoundTextHidden = isNotFoundTextHidden.binding(),
                 .text = text.binding(),
                 .onCommit = [self = *this] { self.searchFieldDidStartSearching(); },
                 .onChange = [self = *this](const std::string& newText) { self.textChanged(newText); },
                 .previousClicked =
                     [self = *this] {
                       self.scripting->previousClicked(self.text.get(), *self.webView->webView);
                     },
                 .nextClicked =
                     [self = *this] { self.scripting->nextClicked(self.text.get(), *self.webView->webView); },
                 .onDone = [self = *this] { self.doneClicked(); },
                 .webVButtons = {}})
      .onAppear([isFind = isFind] { isFind.set(true); });
}

View FindableWebView::findableWebView() const {
  return filling(
      VStack(tight, {when(sharedState->isSearching.get() && webView.has_value(), [&] { return findBar(); }),
                     when(webView.has_value(), [&] { return View(*webView); })}));
}

void FindableWebView::searchFieldDidStartSearching() const {
  if (!webView) return;
  scripting->startFinding(text.get(), webView->webView,
                          [disabled = isPrevNextButtonDisabled, hidden = isNotFoundTextHidden](bool isFound) {
                            disabled.set(!isFound);
                            hidden.set(isFound);
                          });
}

void FindableWebView::textChanged(const std::string& newText) const {
  // Typing searches nothing: the steps wait for the next Return.
  if (newText.empty() || newText != text.get()) {
    isPrevNextButtonDisabled.set(true);
    isNotFoundTextHidden.set(true);
  }
  if (newText.empty()) isFind.set(false);
  text.set(newText);
}

void FindableWebView::doneClicked() const {
  sharedState->isSearching.set(false);
  if (!webView) return;
  scripting->stopFinding(text.get(), *webView->webView);
  webView->webView->makeFirstResponder();
}

Views FindableWebView::mainPlace() const {
  return {when(sharedState->showToolbar.get(), [&] { return View(toolbar()); }),
          isMarkdownMainView() ? filling(markdownView) : findableWebView()};
}

View FindableWebView::sidebar(bool isOpen, const View& view, const Frame& frame, DividerPlace divider) {
  return when(isOpen, [&] {
    const auto framed = view.frame(frame);
    return divider == DividerPlace::before ? platform::Group({Divider(), framed})
                                           : platform::Group({framed, Divider()});
  });
}

View FindableWebView::sidebar(const platform::Published<bool>& flag, const WebView& page, const Frame& frame,
                              DividerPlace divider) const {
  const bool isMain = !isMarkdownMainView() && webView && webView->webView == page.webView;
  return sidebar(flag.get() && !isMain, View(page), frame, divider);
}

View FindableWebView::markdownSidebar(const Frame& frame, DividerPlace divider) const {
  return sidebar(sharedState->isMarking.get() && !isMarkdownMainView(), markdownView, frame, divider);
}

View FindableWebView::sideBySide() const {
  const Frame frame{.width = sideBarSize(UserDefaultsHelper().webViewWidth(), maxSideBarWidth),
                    .maxHeight = infinity};
  const auto& state = *sharedState;
  return HStack(tight, {sidebar(state.isBarding, bardWebView, frame, DividerPlace::after),
                        markdownSidebar(frame, DividerPlace::before),
                        sidebar(state.isChatting, chatWebView, frame, DividerPlace::after),
                        sidebar(state.isHemingwaying, hemingwayWebView, frame, DividerPlace::before),
                        sidebar(state.isBitBucketing, bitBucketWebView, frame, DividerPlace::after),
                        sidebar(state.isGitLabing, gitLabWebView, frame, DividerPlace::before),
                        sidebar(state.isJiring, jiraWebView, frame, DividerPlace::before),
                        filling(VStack(tight, mainPlace()))});
}

View FindableWebView::oneAboveTheOther() const {
  const Frame frame{.height = sideBarSize(UserDefaultsHelper().webViewHeight(), maxSideBarHeight),
                    .maxWidth = infinity};
  const auto& state = *sharedState;
  auto all = mainPlace();
  all.push_back(sidebar(state.isChatting, chatWebView, frame, DividerPlace::after));
  all.push_back(sidebar(state.isBarding, bardWebView, frame, DividerPlace::after));
  all.push_back(sidebar(state.isHemingwaying, hemingwayWebView, frame, DividerPlace::before));
  all.push_back(sidebar(state.isBitBucketing, bitBucketWebView, frame, DividerPlace::after));
  all.push_back(sidebar(state.isGitLabing, gitLabWebView, frame, DividerPlace::before));
  all.push_back(sidebar(state.isJiring, jiraWebView, frame, DividerPlace::before));
  all.push_back(markdownSidebar(frame, DividerPlace::after));
  return VStack(tight, std::move(all));
}

View FindableWebView::body() const {
  if (isSideBarViewing() && isWideEnoughToShowChat()) return VStack(tight, {sideBySide()});
  if (isSideBarViewing() && isTallEnoughToShowChat()) return VStack(tight, {oneAboveTheOther()});
  return VStack(tight, mainPlace());
}

}  // namespace velkin
