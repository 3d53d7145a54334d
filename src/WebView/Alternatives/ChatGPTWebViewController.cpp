#include "WebView/Alternatives/ChatGPTWebViewController.h"

#include "Helpers/ViewAddresses.h"
#include "Platform/DebugLog.h"

namespace velkin {

namespace {

constexpr const char* readyMessage = "dom-ready";
constexpr const char* logName = "ChatGPTWebViewController";

/// A page around one `webview` element, with what else stands in it.
std::string wrapperPage(const std::string& more) {
  return R"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8">
<title>ChatGPT</title>
</head>
<body>
<div class="page darwin">
)" + more +
         R"(<webview id="webview"></webview>
</div>
</body>
</html>
)";
}

}  // namespace

// In this order: each is made of those above it.
const std::string ChatGPTWebViewController::cssString =
    ".text-xs.text-center { opacity: 0; height: 0; margin-bottom: -10px; } "
    ".sticky, .pointer-events-auto.flex.border-orange-500, [class*=\"shared__Capabilities\"] "
    "{ display: none !important; } "
    "[class*=\"shared__Wrapper\"] { align-items: center; justify-content: center; text-align: center; "
    "margin-top: 15vh; } "
    "[class*=\"shared__Wrapper\"] h3 { margin-top: -40px; font-size: 20px; }";

const std::string ChatGPTWebViewController::source =
    "  var style = document.createElement('style');\n  style.innerHTML = '" + cssString +
    "';\n  document.head.appendChild(style);";

const std::string ChatGPTWebViewController::headingScript =
    R"(document.querySelector("[class*='shared__Wrapper']").innerHTML += "<h3>Start by asking anything.</h3>")";

const platform::WKUserScript ChatGPTWebViewController::userScript{.source = source};

const std::string ChatGPTWebViewController::pureScript = R"(<script>
const webview = document.querySelector('webview');
webview.addEventListener('dom-ready', () => {
  webview.insertCSS(`)" + cssString + R"(`);
  webview.executeJavaScript(`)" + headingScript + R"(`);
});
</script>
)";

const std::string ChatGPTWebViewController::smallHtml = wrapperPage("");

const std::string ChatGPTWebViewController::htmlString =
    wrapperPage("<button id=\"reload\" type=\"button\">Reload</button>\n");

const std::string ChatGPTWebViewController::htmlButtonString = wrapperPage(
    "<button id=\"back\" type=\"button\">Back</button>\n"
    "<button id=\"forward\" type=\"button\">Forward</button>\n"
    "<button id=\"reload\" type=\"button\">Reload</button>\n");

const platform::WKWebViewConfiguration& ChatGPTWebViewController::config() {
  if (!config_) {
    config_.emplace();
    config_->userContentController.addScriptMessageHandler(*this, readyMessage);
  }
  return *config_;
}

void ChatGPTWebViewController::loadView() {
  const platform::NSRect frame{{0, 0}, {defaults.webViewWidth(), defaults.webViewHeight()}};
  webView_ = platform::WKWebView::make(frame, config());
  webView_->load(platform::URLRequest{getUrl(WebViewSwitchType::chatgpt)});
  webView_->navigationDelegate = this;
}

void ChatGPTWebViewController::didFinish(platform::WKWebView& webView) {
  platform::debugLog(logName, "webView(_:didFinish:)", "");
  trim(webView);
}

void ChatGPTWebViewController::didReceiveScriptMessage(const std::string&, const std::string&) {
  platform::debugLog(logName, "userContentController(_:didReceive:)", "dom_ready");
  if (webView_) trim(*webView_);
}

void ChatGPTWebViewController::trim(platform::WKWebView& webView) const {
  webView.evaluateJavaScript(source + "\n" + headingScript, platform::WKWebView::logFailure());
}

platform::View ChatGPTUIView::body() const {
  return platform::HostedView(
      controller.get(), [controller = controller]() -> platform::NSView* { return &controller->view(); },
      [](platform::NSView&) {});
}

}  // namespace velkin
