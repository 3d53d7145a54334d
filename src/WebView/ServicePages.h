#pragma once

#include "Values/WebViewSwitchType.h"
#include "WebView/WebView.h"

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

namespace velkin {

/// The services' pages by view. The value is cheap; every copy has the same pages. Main thread.
class ServicePages {
 public:
  using Pages = std::array<WebView, webViewCount>;

  /// In the catalogue's order.
  explicit ServicePages(Pages pages) : pages_(std::make_shared<const Pages>(std::move(pages))) {}

  /// Chat's page for a view that has none.
  const WebView& operator[](WebViewSwitchType view) const noexcept {
    return (*pages_)[isWebView(view) ? static_cast<std::size_t>(view) : 0];
  }

 private:
  std::shared_ptr<const Pages> pages_;
};

}  // namespace velkin
