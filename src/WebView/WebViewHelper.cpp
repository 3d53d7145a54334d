#include "WebView/WebViewHelper.h"

#include "Helpers/ViewAddresses.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"
#include "Values/UserAgents.h"

#include <string>

namespace velkin {

namespace {

bool isChatService(WebViewSwitchType type) {
  return type == WebViewSwitchType::chatgpt || type == WebViewSwitchType::bard;
}

}  // namespace

double WebViewHelper::width() {
  if (!width_) width_ = windowSize(fromRawValue<AppearanceWidth>(UserDefaultsHelper().webViewWidth()));
  return *width_;
}

double WebViewHelper::height() {
  if (!height_) height_ = windowSize(fromRawValue<AppearanceHeight>(UserDefaultsHelper().webViewHeight()));
  return *height_;
}

platform::WKWebViewConfiguration WebViewHelper::getConfig() const {
  platform::WKWebViewConfiguration configuration;
  configuration.defaultWebpagePreferences.allowsContentJavaScript = true;
  configuration.defaultWebpagePreferences.preferredContentMode = platform::WKContentMode::mobile;
  return configuration;
}

void WebViewHelper::setAllows(platform::WKWebView& webView) const {
  webView.allowsMagnification = true;
  webView.allowsLinkPreview = true;
  webView.setAllowsBackForwardNavigationGestures(true);
}

void WebViewHelper::setUserAgent(WebViewSwitchType type, platform::WKWebView& webView) const {
  const auto name = customUserAgent(type);
  if (!name.empty()) webView.setCustomUserAgent(std::string(name));
}

std::shared_ptr<platform::WKWebView> WebViewHelper::makeWebView(WebViewSwitchType type) {
  std::shared_ptr<platform::WKWebView> webView =
      platform::WKWebView::make({{0, 0}, {width(), height()}}, getConfig());
  setUserAgent(type, *webView);
  setAllows(*webView);
  return webView;
}

std::shared_ptr<platform::WKWebView> WebViewHelper::getWKWebView(WebViewSwitchType type) {
  platform::URLRequest request{getUrl(type)};
  if (isChatService(type)) {
    request.httpShouldHandleCookies = true;
    request.allowsExpensiveNetworkAccess = true;
  }
  auto webView = makeWebView(type);
  webView->load(request);
  return webView;
}

WrappedWebView WebViewHelper::getWrappedWebView(WebViewSwitchType type) {
  return {getUrl(type), makeWebView(type)};
}

WebView WebViewHelper::getWebUIView(WebViewSwitchType type) { return {getUrl(type), makeWebView(type)}; }

}  // namespace velkin
