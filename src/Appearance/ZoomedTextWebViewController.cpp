#include "Appearance/ZoomedTextWebViewController.h"

#include <utility>

namespace velkin {

namespace {

// Without a ground of its own its letters get bolder each time that the engine paints them anew.
constexpr const char* sampleText =
    "<style>:root{color-scheme:light dark;background:canvas;overflow:hidden}"
    "body{margin:4px;font-family:sans-serif}</style>"
    "<p style=\"margin:0\">Of course! Here is a short plan for your week, with time to rest.</p>";

std::shared_ptr<platform::WKWebView> makeView(std::shared_ptr<platform::WKProcessPool> pool) {
  platform::WKWebViewConfiguration configuration;
  configuration.usesPersistentDataStore = false;
  configuration.isIsolated = true;
  configuration.preferences.developerExtrasEnabled = true;
  configuration.processPool = std::move(pool);
  return platform::WKWebView::make({}, std::move(configuration));
}

}  // namespace

ZoomedTextWebViewController::ZoomedTextWebViewController(std::shared_ptr<platform::WKProcessPool> pool)
    : MarkdownWebViewController(makeView(std::move(pool))) {}

std::string ZoomedTextWebViewController::samplePage() {
  return std::string("<html><body>") + sampleText + "</body></html>";
}

}  // namespace velkin
