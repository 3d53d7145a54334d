#include "WebView/WebView.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/LogText.h"

namespace velkin {

using platform::addressForLog;
using platform::debugLog;

platform::View WebView::body() const {
  return platform::HostedView(
      webView.get(), [self = *this]() -> platform::NSView* { return &self.makeNSView(); },
      [self = *this](platform::NSView&) { self.updateNSView(*self.webView); });
}

platform::WKWebView& WebView::makeNSView() const {
  webView->setPageZoom(UserDefaultsHelper().webViewZoom());
  return *webView;
}

void WebView::updateNSView(platform::WKWebView& nsView) const {
  const auto present = nsView.url();
  debugLog("WebView", "updateNSView(_:context:)",
           "nsView.url=" + (present ? addressForLog(present->absoluteString()) : std::string("nil")) +
               ", url=" + addressForLog(url.absoluteString()));
  if (present) return;
  // Never inside an update of the views; and hosts made in a row must not each load it.
  platform::DispatchQueue::main().async([self = *this] {
    if (!self.webView->url()) self.webView->load(platform::URLRequest{self.url});
  });
}

}  // namespace velkin
