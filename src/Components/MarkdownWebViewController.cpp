#include "Components/MarkdownWebViewController.h"

#include "Platform/NSAppearance.h"
#include "Platform/NSWorkspace.h"

#include <array>
#include <string_view>
#include <utility>

namespace velkin {

using platform::WKNavigationActionPolicy;

namespace {

/// What a link in a text may open. Others would hand a text's author the user's files and programs.
constexpr std::array<std::string_view, 3> linkSchemes = {"https", "http", "mailto"};

/// In seconds.
constexpr double loadPatience = 0.5;

constexpr std::string_view ownPage = "about:blank";

bool isOwnPage(const platform::URL& url) {
  const auto& address = url.absoluteString();
  return address == ownPage || address.starts_with(std::string(ownPage) + "#");
}

}  // namespace

MarkdownWebViewController::MarkdownWebViewController(std::shared_ptr<platform::WKWebView> shownView)
    : isDarkMode(platform::NSAppearance::isDarkNow()), webView(std::move(shownView)) {
  webView->navigationDelegate = this;
}

MarkdownWebViewController::~MarkdownWebViewController() {
  if (webView->navigationDelegate == this) webView->navigationDelegate = nullptr;
}

void MarkdownWebViewController::loadView() {
  themeObserver_ = platform::NSDistributedNotificationCenter::defaultCenter().addObserver(
      platform::interfaceThemeChangedNotification, [this](const std::string&) { modeChanged(); });
}

void MarkdownWebViewController::show(double zoom, const std::string& page) {
  if (hasShown_ && zoom == shownZoom_ && page == shownPage_) return;
  hasShown_ = true;
  shownZoom_ = zoom;
  shownPage_ = page;
  webView->setPageZoom(zoom);
  if (loadsInTurn && (nextPage_ || webView->isLoading())) {
    nextPage_ = page;
    if (!patience_) patience_ = platform::DispatchQueue::main().timer(loadPatience, [this] { loadNext(); });
  } else {
    load(page);
  }
}

void MarkdownWebViewController::load(const std::string& page) {
  patience_.reset();
  nextPage_.reset();
  webView->loadHTMLString(page, std::nullopt);
}

void MarkdownWebViewController::loadNext() {
  patience_.reset();
  if (const auto next = std::exchange(nextPage_, std::nullopt)) load(*next);
}

void MarkdownWebViewController::didFail(platform::WKWebView&, const platform::NSError&) { loadNext(); }

void MarkdownWebViewController::forgetShown() { hasShown_ = false; }

WKNavigationActionPolicy MarkdownWebViewController::decidePolicyFor(
    platform::WKWebView&, const platform::WKNavigationAction& action) {
  // The page itself, and places in it.
  if (isOwnPage(action.url)) return WKNavigationActionPolicy::allow;
  if (action.navigationType == platform::WKNavigationType::linkActivated) {
    const auto scheme = action.url.scheme();
    for (const auto allowed : linkSchemes) {
      if (scheme == allowed) platform::NSWorkspace::shared().open(action.url);
    }
  }
  return WKNavigationActionPolicy::cancel;
}

void MarkdownWebViewController::didFinish(platform::WKWebView& finished) {
  if (nextPage_) return loadNext();
  finished.evaluateJavaScript("document.body.style.overflow = 'hidden';", platform::WKWebView::logFailure());
}

}  // namespace velkin
