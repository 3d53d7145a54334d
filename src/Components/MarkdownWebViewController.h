#pragma once

#include "Platform/DispatchQueue.h"
#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSViewController.h"
#include "Platform/WKWebView.h"

#include <memory>
#include <optional>
#include <string>

namespace velkin {

/// The page that shows converted Markdown. Main thread.
class MarkdownWebViewController : public platform::NSViewController, public platform::WKNavigationDelegate {
 public:
  explicit MarkdownWebViewController(std::shared_ptr<platform::WKWebView> webView);
  ~MarkdownWebViewController() override;

  /// As the desktop was when this was made, turned round at each change since.
  bool isDarkMode;
  std::string markdownHtml;
  const std::shared_ptr<platform::WKWebView> webView;

  void modeChanged() { isDarkMode = !isDarkMode; }

  /// While a page loads, the next one waits for it, and only the newest of those that come meanwhile is
  /// loaded. For a text that changes faster than a page loads.
  bool loadsInTurn = false;

  /// Loads `page` at `zoom`, unless that is what was loaded last.
  void show(double zoom, const std::string& page);
  /// Has the next `show` load its page in any case.
  void forgetShown();
  /// Bytes of the page that was shown last.
  std::size_t shownLength() const noexcept { return shownPage_.size(); }

  platform::WKNavigationActionPolicy decidePolicyFor(platform::WKWebView& view,
                                                     const platform::WKNavigationAction& action) override;
  void didFinish(platform::WKWebView& finished) override;
  void didFail(platform::WKWebView& failed, const platform::NSError& error) override;

 protected:
  void loadView() override;
  platform::NSView& loadedView() override { return *webView; }

 private:
  platform::Connection themeObserver_;
  bool hasShown_ = false;
  double shownZoom_ = 0;
  std::string shownPage_;
  std::optional<std::string> nextPage_;
  /// A picture that doesn't come holds a page up for so long only.
  std::unique_ptr<platform::Timer> patience_;
  void load(const std::string& page);
  void loadNext();
};

}  // namespace velkin
