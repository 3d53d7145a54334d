#include "SearchBar/AnswerPage.h"

namespace velkin {

namespace {

/// The page shows no scroll bar, and so the engine doesn't scroll it either; a long answer must still be
/// read to its end.
constexpr const char* scrollScript = R"(
(() => {
  const isHidden = () => getComputedStyle(document.body).overflowY === 'hidden';
  const scroller = () => document.scrollingElement;
  addEventListener('wheel', event => {
    if (!event.ctrlKey && isHidden()) scroller().scrollTop += event.deltaY;
  }, {passive: true});
  addEventListener('keydown', event => {
    if (event.ctrlKey || event.altKey || event.metaKey || !isHidden()) return;
    const page = innerHeight * 0.9;
    const step = {ArrowDown: 40, ArrowUp: -40, PageDown: page, PageUp: -page,
                  ' ': event.shiftKey ? -page : page, Home: -1e9, End: 1e9}[event.key];
    if (step === undefined) return;
    scroller().scrollTop += step;
    event.preventDefault();
  });
})();)";

}  // namespace

const std::shared_ptr<MarkdownWebViewController>& AnswerPage::controller() {
  if (!controller_) {
    platform::WKWebViewConfiguration configuration;
    configuration.usesPersistentDataStore = false;
    configuration.isIsolated = true;
    configuration.userContentController.addUserScript({.source = scrollScript});
    controller_ =
        std::make_shared<MarkdownWebViewController>(platform::WKWebView::make({}, std::move(configuration)));
  }
  return controller_;
}

void AnswerPage::warmUp() {
  if (!controller_) controller()->webView->loadHTMLString({}, std::nullopt);
}

}  // namespace velkin
