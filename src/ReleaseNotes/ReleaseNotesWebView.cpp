#include "ReleaseNotes/ReleaseNotesWebView.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/FatalError.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSBundle.h"
#include "ReleaseNotes/ReleaseNotesText.h"

namespace velkin {

ReleaseNotesWebViewController::ReleaseNotesWebViewController()
    : isDarkMode(platform::NSAppearance::isDarkNow()) {}

void ReleaseNotesWebViewController::loadView() {
  webView_ = platform::WKWebView::make({{0, 0}, {600, 600}}, {});
  webView_->navigationDelegate = this;
  webView_->setPageZoom(UserDefaultsHelper().webViewZoom());
  setupView(isDarkMode);
}

void ReleaseNotesWebViewController::setupView(bool isDark) {
  const auto& bundle = platform::NSBundle::main();
  webView_->loadHTMLString(
      releaseNotesPage(platform::unwrap(bundle.shortVersionString), platform::unwrap(bundle.version), isDark,
                       UserDefaultsHelper().hemingwayEnabled()),
      std::nullopt);
}

void ReleaseNotesWebViewController::didFinish(platform::WKWebView& webView) {
  // The engine sets text flush with the window; here and only here is the page known to be ours.
  webView.evaluateJavaScript("document.body.style.padding = '0 1.5em 1.5em';",
                             platform::WKWebView::logFailure());
}

platform::View ReleaseNotesWebView::body() const {
  return platform::HostedView(
      controller.get(),
      [controller = controller]() -> platform::NSView* {
        if (!*controller) *controller = std::make_unique<ReleaseNotesWebViewController>();
        return &(*controller)->view();
      },
      [](platform::NSView&) {});
}

}  // namespace velkin
