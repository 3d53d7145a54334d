#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSViewController.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>
#include <string>

namespace velkin {

/// The writing checker's page with a wider place to write and a dark style, whatever the desktop's is. An
/// alternative to `WebView`; the window makes none. Main thread.
class HemingwayWebViewController : public platform::NSViewController, public platform::WKNavigationDelegate {
 public:
  /// Puts the style sheet into a page, which needn't have a head yet.
  static const std::string cssScript;

  UserDefaultsHelper defaults;

  /// nullptr until the view is loaded.
  const std::shared_ptr<platform::WKWebView>& webView() const noexcept { return webView_; }

  void didFinish(platform::WKWebView& webView) override;

 protected:
  void loadView() override;
  platform::NSView& loadedView() override { return *webView_; }

 private:
  std::shared_ptr<platform::WKWebView> webView_;
};

/// The writing checker's page hosted through its controller.
struct HemingwayUIView {
  std::shared_ptr<HemingwayWebViewController> controller = std::make_shared<HemingwayWebViewController>();

  platform::View body() const;
};

}  // namespace velkin
