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

  /// In the order of `webViews`.
  explicit ServicePages(Pages pages) : pages_(std::make_shared<const Pages>(std::move(pages))) {}

  /// Chat's page for a view that has none.
  const WebView& operator[](WebViewSwitchType view) const noexcept {
    return (*pages_)[webViewIndex(view).value_or(0)];
  }

 private:
  std::shared_ptr<const Pages> pages_;
};

}  // namespace velkin
