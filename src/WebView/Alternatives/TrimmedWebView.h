#pragma once

#include "Platform/NSViewController.h"
#include "Platform/URL.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>
#include <string>

namespace velkin {

/// A web view with overrides of a page's styles and scripts, for pages that show more than is wanted. An
/// alternative to `WebView`; the window makes none. Main thread.
class TrimmedWkWebView : public platform::WKUIDelegate, public platform::WKNavigationDelegate {
 public:
  TrimmedWkWebView(platform::NSRect frame, platform::WKWebViewConfiguration configuration);
  /// Its own UI delegate.
  TrimmedWkWebView();

  const std::string cssString;
  const std::string scriptString;
  const std::string htmlString;
  const std::shared_ptr<platform::WKWebView> webView;

  void didFinish(platform::WKWebView& finished) override;
};

/// A controller whose page gets a style of its own. Main thread.
class ScriptedViewController : public platform::NSViewController {
 public:
  explicit ScriptedViewController(std::string style = {}) : style_(std::move(style)) {}

  /// The script that puts the style into a page. The same text at every call.
  const std::string& source();
  const std::shared_ptr<platform::WKWebView>& webView();

 protected:
  void loadView() override { webView(); }
  platform::NSView& loadedView() override { return *webView_; }

 private:
  std::string style_;
  std::string source_;
  std::shared_ptr<platform::WKWebView> webView_;
};

/// A page hosted through its `ScriptedViewController`; each update loads it.
struct TrimmedWebView {
  platform::URL url;
  std::shared_ptr<ScriptedViewController> controller = std::make_shared<ScriptedViewController>();

  platform::View body() const;
};

}  // namespace velkin
