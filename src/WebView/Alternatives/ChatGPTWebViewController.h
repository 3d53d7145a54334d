#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/NSViewController.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// The chat page without what makes no sense in a small window: the message below its input, its sidebar, the
/// suggestions on a new chat. An alternative to `WebView`; the window makes none. Main thread.
class ChatGPTWebViewController : public platform::NSViewController,
                                 public platform::WKNavigationDelegate,
                                 public platform::WKScriptMessageHandler {
 public:
  /// The style sheet, on one line and without apostrophes: it stands in scripts.
  static const std::string cssString;
  /// Puts the style sheet into a page.
  static const std::string source;
  /// Puts a heading above what a new chat shows; each run one more.
  static const std::string headingScript;
  static const platform::WKUserScript userScript;
  /// A script element for a page that holds another one in its `webview` element.
  static const std::string pureScript;
  /// Such pages: bare, and with buttons.
  static const std::string smallHtml;
  static const std::string htmlString;
  static const std::string htmlButtonString;

  UserDefaultsHelper defaults;

  /// Made at its first read. Its page tells of itself by the message "dom-ready".
  const platform::WKWebViewConfiguration& config();
  /// nullptr until the view is loaded.
  const std::shared_ptr<platform::WKWebView>& webView() const noexcept { return webView_; }

  void didFinish(platform::WKWebView& webView) override;
  void didReceiveScriptMessage(const std::string& name, const std::string& body) override;

 protected:
  void loadView() override;
  platform::NSView& loadedView() override { return *webView_; }

 private:
  void trim(platform::WKWebView& webView) const;

  std::optional<platform::WKWebViewConfiguration> config_;
  std::shared_ptr<platform::WKWebView> webView_;
};

/// The chat page hosted through its controller.
struct ChatGPTUIView {
  std::shared_ptr<ChatGPTWebViewController> controller = std::make_shared<ChatGPTWebViewController>();

  platform::View body() const;
};

}  // namespace velkin
