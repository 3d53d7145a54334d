#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/WKWebView.h"
#include "Values/WebViewSwitchType.h"
#include "WebView/Alternatives/WrappedWebView.h"
#include "WebView/WebView.h"

#include <memory>
#include <optional>

namespace velkin {

/// Turns an entry of the catalogue into a configured web view. Main thread.
class WebViewHelper {
 public:
  /// Of the window, in points, as they were at the first read.
  double width();
  double height();

  platform::WKWebViewConfiguration getConfig() const;
  void setAllows(platform::WKWebView& webView) const;
  /// The chat services give their full pages to this desktop browser only; all others see the engine's own
  /// name.
  void setUserAgent(WebViewSwitchType type, platform::WKWebView& webView) const;

  /// A web view on which the page load has begun.
  std::shared_ptr<platform::WKWebView> getWKWebView(WebViewSwitchType type);
  /// The page loads when the view first comes on show.
  WrappedWebView getWrappedWebView(WebViewSwitchType type);
  WebView getWebUIView(WebViewSwitchType type);

 private:
  std::shared_ptr<platform::WKWebView> makeWebView(WebViewSwitchType type);

  std::optional<double> width_;
  std::optional<double> height_;
};

}  // namespace velkin
