#include "Components/MarkdownPage.h"

#include "Components/MarkdownHtmlHelper.h"

namespace velkin {

namespace {

/// The page shows no scroll bar, and so the engine doesn't scroll it either; a long text must still be
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

/// A text may hold the copy button's own handler, on an element that lies unseen over the text or reacts
/// to any key. So handlers stay on buttons only that are where and what the page's own are. The engine looks
/// for them: a script that touches all elements makes an object for each, at every load.
constexpr const char* buttonScript = R"(
(() => {
  const isButton = element => element.matches('pre > button.copy-button') && element.textContent === 'Copy';
  const handlers = document.evaluate('//*/@*[starts-with(name(), "on")]', document, null,
                                     XPathResult.ORDERED_NODE_SNAPSHOT_TYPE, null);
  for (let i = 0; i < handlers.snapshotLength; ++i) {
    const {name, ownerElement} = handlers.snapshotItem(i);
    if (name !== 'onclick' || !isButton(ownerElement)) ownerElement.removeAttribute(name);
  }
  addEventListener('click', event => {
    const button = event.target.closest ? event.target.closest('[onclick]') : null;
    if (!button) return;
    const box = button.getBoundingClientRect();
    const block = button.parentNode.getBoundingClientRect();
    let isSeen = event.isTrusted && box.width <= 120 && box.height <= 60 && box.left >= block.left &&
        box.right <= block.right && box.top >= block.top && box.bottom <= block.bottom + 60;
    for (let e = button; e; e = e.parentElement) {
      const style = getComputedStyle(e);
      isSeen = isSeen && style.opacity > 0.8 && style.visibility === 'visible';
    }
    if (isSeen) return;
    event.preventDefault();
    event.stopImmediatePropagation();
  }, true);
})();)";

}  // namespace

platform::WKWebViewConfiguration markdownPageConfiguration(bool showsPictures) {
  platform::WKWebViewConfiguration configuration;
  configuration.usesPersistentDataStore = false;
  configuration.isIsolated = true;
  configuration.isolatedScripts = MarkdownHtmlHelper::pageScripts();
  configuration.isolatedPictures = showsPictures;
  configuration.userContentController.addUserScript({.source = scrollScript});
  configuration.userContentController.addUserScript({.source = buttonScript});
  return configuration;
}

}  // namespace velkin
