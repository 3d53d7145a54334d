#pragma once

#include "Platform/NSHostingController.h"
#include "Platform/View/Style.h"
#include "WebView/WebView.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace velkin {

/// A page as the whole of its declared interface.
struct ContentView {
  WebView webView;

  platform::View body() const { return webView; }
};

/// Whether a view stands in a window that was opened for it. Declared for views to read; none sets it.
struct IsNewWindowKey {
  static constexpr bool defaultValue = false;
};

/// What views may read of their surroundings.
struct EnvironmentValues {
  bool isNewWindow = IsNewWindowKey::defaultValue;
};

/// The search field of a page's host.
struct WebViewSearchField {
  platform::NSRect frame{{0, 0}, {600, 44}};
  std::string menuTitle = "Search Menu";
  platform::Color background = platform::Color::rgb(0, 0, 0, 0.7);
};

/// A host of one page with a search field. An alternative to the container, which has a find bar instead.
class WebViewHostingController : public platform::NSHostingController<WebView> {
 public:
  explicit WebViewHostingController(WebView rootWebView)
      : NSHostingController(rootWebView), webView(rootWebView.webView) {}

  std::shared_ptr<platform::WKWebView> webView;

  /// Made at its first read.
  const WebViewSearchField& searchField() {
    if (!searchField_) searchField_.emplace();
    return *searchField_;
  }

 private:
  std::optional<WebViewSearchField> searchField_;
};

}  // namespace velkin
