#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSViewController.h"
#include "Platform/URL.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>

namespace velkin {

/// A controller around a web view, which marks the chat page's submit button after each load. An alternative
/// to `WebView`: the window uses that one alone. Main thread.
class WrappedWebViewController : public platform::NSViewController, public platform::WKNavigationDelegate {
 public:
  WrappedWebViewController();

  UserDefaultsHelper defaults;

  /// The same object at every call.
  const platform::WKWebViewConfiguration& config();
  const std::shared_ptr<platform::WKWebView>& webView() const noexcept { return webView_; }

  /// Takes `webView` as the controller's view, at the zoom of the settings, and loads `url` in it.
  void loadPage(const platform::URL& url, std::shared_ptr<platform::WKWebView> webView);

  void didFinish(platform::WKWebView& webView) override;

 protected:
  void loadView() override {}
  platform::NSView& loadedView() override { return *webView_; }

 private:
  std::optional<platform::WKWebViewConfiguration> config_;
  std::shared_ptr<platform::WKWebView> webView_;
};

/// A web view hosted through its controller.
struct WrappedWebView {
  platform::URL url;
  std::shared_ptr<platform::WKWebView> webView;
  std::shared_ptr<WrappedWebViewController> controller = std::make_shared<WrappedWebViewController>();

  platform::View body() const;
};

}  // namespace velkin
