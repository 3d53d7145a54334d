#include "WebView/Alternatives/HemingwayWebViewController.h"

#include "Helpers/ViewAddresses.h"
#include "Platform/DebugLog.h"
#include "Platform/LogText.h"

namespace velkin {

const std::string HemingwayWebViewController::cssScript = R"js((function() {
  var style = document.createElement('style');
  style.innerHTML = [
    ':root { color-scheme: dark; }',
    'body { background: #1e1e22; color: #e6e6ea; }',
    '.hemingway-desktop-sidebar-container { display: none; }',
    '.hemingway-editor-components-container { flex-basis: 60em; }',
    '.hemingway-editor-container { display: flex; background: #1e1e22; color: #e6e6ea; filter: contrast(0.92); }',
    '.hemingway-editor-container [class*="toolbar"] { display: none; }',
    '.hemingway-editor-container [class*="header"] { display: none; }'
  ].join('\n');
  (document.head || document.documentElement).appendChild(style);
})();)js";

void HemingwayWebViewController::loadView() {
  const platform::NSRect frame{{0, 0}, {defaults.webViewWidth(), defaults.webViewHeight()}};
  webView_ = platform::WKWebView::make(frame, {});
  webView_->load(platform::URLRequest{getUrl(WebViewSwitchType::hemingway)});
  webView_->navigationDelegate = this;
}

void HemingwayWebViewController::didFinish(platform::WKWebView& webView) {
  webView.evaluateJavaScript(cssScript, [](const auto&, const std::optional<platform::NSError>& error) {
    platform::debugLog("HemingwayWebViewController", "webView(_:didFinish:)",
                       "script run " + (error ? platform::scriptErrorForLog(*error) : std::string("well")));
  });
}

platform::View HemingwayUIView::body() const {
  return platform::HostedView(
      controller.get(), [controller = controller]() -> platform::NSView* { return &controller->view(); },
      [](platform::NSView&) {});
}

}  // namespace velkin
