#include "WebView/Alternatives/WrappedWebView.h"

#include <utility>

namespace velkin {

namespace {

constexpr const char* markSubmitButton = R"(const textAreas = document.querySelectorAll('form .m-0');
const textArea = textAreas[textAreas.length - 1];
const submitButton = textArea.nextSibling;
while (submitButton && submitButton.nodeType !== Node.ELEMENT_NODE) {
  submitButton = submitButton.nextSibling;
}
submitButton.id = "submit-button";)";

}  // namespace

WrappedWebViewController::WrappedWebViewController() : webView_(platform::WKWebView::make({}, {})) {}

const platform::WKWebViewConfiguration& WrappedWebViewController::config() {
  if (!config_) {
    config_.emplace();
    config_->preferences.developerExtrasEnabled = true;
  }
  return *config_;
}

void WrappedWebViewController::loadPage(const platform::URL& url,
                                        std::shared_ptr<platform::WKWebView> webView) {
  webView->setPageZoom(defaults.webViewZoom());
  webView_ = std::move(webView);
  webView_->navigationDelegate = this;
  webView_->load(platform::URLRequest{url});
}

void WrappedWebViewController::didFinish(platform::WKWebView& webView) {
  webView.evaluateJavaScript(markSubmitButton, platform::WKWebView::logFailure());
}

platform::View WrappedWebView::body() const {
  return platform::HostedView(
      webView.get(),
      [self = *this]() -> platform::NSView* {
        self.controller->loadPage(self.url, self.webView);
        return &self.controller->view();
      },
      [](platform::NSView&) {});
}

}  // namespace velkin
