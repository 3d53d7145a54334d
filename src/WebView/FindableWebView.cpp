#include "WebView/FindableWebView.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSScreen.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"
#include "WebView/FindTextBarUIView.h"

#include <algorithm>
#include <array>

namespace velkin {

using platform::Divider;
using platform::Frame;
using platform::infinity;
using platform::View;
using platform::Views;
using platform::when;
using enum WebViewSwitchType;

namespace {

struct SidebarPlace {
  WebViewSwitchType view;
  /// A sidebar's divider shows with it and stands on the same side of it whatever else is open.
  bool isDividerFirst;
};

constexpr std::array<SidebarPlace, webViewCount + 1> columns = {{{bard, false},
                                                                 {markdown, true},
                                                                 {chatgpt, false},
                                                                 {hemingway, true},
                                                                 {bitbucket, false},
                                                                 {gitlab, true},
                                                                 {jira, true}}};
constexpr std::array<SidebarPlace, webViewCount + 1> rows = {{{chatgpt, false},
                                                              {bard, false},
                                                              {hemingway, true},
                                                              {bitbucket, false},
                                                              {gitlab, true},
                                                              {jira, true},
                                                              {markdown, false}}};

constexpr platform::StackOptions tight = {.spacing = 0, .alignment = platform::Alignment::fill};

/// Of the window: what is stored, but never more than there is on the screen.
double windowWidth() {
  const auto stored = UserDefaultsHelper().webViewWidth();
  const auto screen = platform::NSScreen::main();
  return screen ? std::min(stored, screen->visibleFrame.size.width) : stored;
}

double windowHeight() {
  const auto stored = UserDefaultsHelper().webViewHeight();
  const auto screen = platform::NSScreen::main();
  return screen ? std::min(stored, screen->visibleFrame.size.height) : stored;
}

double sideBarSize(double length, double share) {
  return length <= 2 * FindableWebView::minChatSize ? FindableWebView::minChatSize : length * share;
}

View filling(const View& view) { return view.frame({.maxWidth = infinity, .maxHeight = infinity}); }

}  // namespace

bool FindableWebView::isWideEnoughToShowChat() const {
  return UserDefaultsHelper().webViewWidth() > rawValue(AppearanceWidth::medium);
}

bool FindableWebView::isTallEnoughToShowChat() const {
  return UserDefaultsHelper().webViewHeight() > rawValue(AppearanceHeight::medium);
}

bool FindableWebView::isMarkdownMainView() const {
  return UserDefaultsHelper().lastVisibleWebView() == markdown;
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

View FindableWebView::sidebar(WebViewSwitchType view, const Frame& frame, bool isDividerFirst) const {
  const bool isScratchpad = view == WebViewSwitchType::markdown;
  const bool isMain = isScratchpad
                          ? isMarkdownMainView()
                          : !isMarkdownMainView() && webView && webView->webView == pages[view].webView;
  return when(sharedState->sidebarFlag(view)->get() && !isMain, [&] {
    const auto framed = (isScratchpad ? markdownView : View(pages[view])).frame(frame);
    return isDividerFirst ? platform::Group({Divider(), framed}) : platform::Group({framed, Divider()});
  });
}

View FindableWebView::sideBySide() const {
  const Frame frame{.width = sideBarSize(windowWidth(), maxSideBarWidth), .maxHeight = infinity};
  Views all;
  for (const auto& [view, isDividerFirst] : columns) all.push_back(sidebar(view, frame, isDividerFirst));
  all.push_back(filling(VStack(tight, mainPlace())));
  return HStack(tight, std::move(all));
}

View FindableWebView::oneAboveTheOther() const {
  const Frame frame{.height = sideBarSize(windowHeight(), maxSideBarHeight), .maxWidth = infinity};
  auto all = mainPlace();
  for (const auto& [view, isDividerFirst] : rows) all.push_back(sidebar(view, frame, isDividerFirst));
  return VStack(tight, std::move(all));
}

View FindableWebView::body() const {
  if (isSideBarViewing() && isWideEnoughToShowChat()) return VStack(tight, {sideBySide()});
  if (isSideBarViewing() && isTallEnoughToShowChat()) return VStack(tight, {oneAboveTheOther()});
  return VStack(tight, mainPlace());
}

}  // namespace velkin
