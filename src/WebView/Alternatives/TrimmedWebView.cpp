#include "WebView/Alternatives/TrimmedWebView.h"

#include "Platform/DebugLog.h"

#include <utility>

namespace velkin {

namespace {

constexpr const char* trimStyles = R"(
webview.addEventListener('dom-ready', () => {
  webview.insertCSS('.text-xs.text-center { opacity: 0 }');
});)";
constexpr const char* trimScript = R"(<script>
const webview = document.getElementById('webview');
webview.addEventListener('dom-ready', () => {});
</script>)";
constexpr const char* trimPage = R"(<!DOCTYPE html>
<html>
<head><meta charset="utf-8"><title>ChatGPT</title></head>
<body><webview id="webview"></webview></body>
</html>)";

}  // namespace

TrimmedWkWebView::TrimmedWkWebView(platform::NSRect frame, platform::WKWebViewConfiguration configuration)
    : cssString(trimStyles),
      scriptString(trimScript),
      htmlString(trimPage),
      webView(platform::WKWebView::make(frame, std::move(configuration))) {}

TrimmedWkWebView::TrimmedWkWebView() : TrimmedWkWebView({}, {}) { webView->uiDelegate = this; }

void TrimmedWkWebView::didFinish(platform::WKWebView& finished) { finished.evaluateJavaScript(scriptString); }

const std::string& ScriptedViewController::source() {
  if (source_.empty()) {
    source_ = "  var style = document.createElement('style');\n  style.innerHTML = '" + style_ +
              "';\n  document.head.appendChild(style);";
  }
  return source_;
}

const std::shared_ptr<platform::WKWebView>& ScriptedViewController::webView() {
  if (!webView_) webView_ = platform::WKWebView::make({}, {});
  return webView_;
}

platform::View TrimmedWebView::body() const {
  return platform::HostedView(
      controller.get(), [controller = controller]() -> platform::NSView* { return &controller->view(); },
      [self = *this](platform::NSView&) {
        self.controller->webView()->load(platform::URLRequest{self.url});
      });
}

}  // namespace velkin
