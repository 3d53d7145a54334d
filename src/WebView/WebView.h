#pragma once

#include "Platform/URL.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>

namespace velkin {

/// A web view among the described views. The value is cheap; every copy shows the same page, which loads
/// once, when it first comes on show, and then lives on while its hosts come and go. Main thread.
struct WebView {
  platform::URL url;
  std::shared_ptr<platform::WKWebView> webView;

  platform::View body() const;

  /// Gives the page the zoom of the settings.
  platform::WKWebView& makeNSView() const;
  /// Loads the page if there has never been one.
  void updateNSView(platform::WKWebView& nsView) const;
};

}  // namespace velkin
