#pragma once

#include "Platform/NSViewController.h"
#include "Platform/View/View.h"
#include "Platform/WKWebView.h"

#include <memory>

namespace velkin {

/// Composes the page of the release notes and shows it in a web view of its own. Light or dark is decided
/// when it is made. Main thread.
class ReleaseNotesWebViewController : public platform::NSViewController,
                                      public platform::WKNavigationDelegate {
 public:
  ReleaseNotesWebViewController();

  const bool isDarkMode;

  /// Composes the page and loads it.
  void setupView(bool isDarkMode);

  void didFinish(platform::WKWebView& webView) override;
  platform::WKWebView& webView() const { return *webView_; }

 protected:
  void loadView() override;
  platform::NSView& loadedView() override { return *webView_; }

 private:
  std::unique_ptr<platform::WKWebView> webView_;
};

/// The release notes' page among the described views. Its controller is made when the page comes on show:
/// then the desktop's look is known for certain.
struct ReleaseNotesWebView {
  std::shared_ptr<std::unique_ptr<ReleaseNotesWebViewController>> controller =
      std::make_shared<std::unique_ptr<ReleaseNotesWebViewController>>();

  platform::View body() const;
};

}  // namespace velkin
