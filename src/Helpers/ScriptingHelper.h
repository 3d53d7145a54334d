#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/WKWebView.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace velkin {

enum class WebViewFindType { next, previous, done, find };

/// The scripts that the program runs in its pages: submitting the chat's form, moving the focus so that a
/// page can scroll, finding text. Main thread.
class ScriptingHelper : public std::enable_shared_from_this<ScriptingHelper> {
 public:
  static std::shared_ptr<ScriptingHelper> make() { return std::make_shared<ScriptingHelper>(); }

  UserDefaultsHelper defaults;
  /// The full submit script has run in the page of `currentWebUrl`.
  bool chatSubmitClicked = false;
  std::string currentWebUrl;

  /// Clicks the chat page's submit button, if chat is the visible view.
  void submitForm(const std::shared_ptr<platform::WKWebView>& webView);
  /// The next submit in chat has a new page before it.
  void pageReloaded();
  /// Gives the page's scrollable area the focus, so that scrolling by keys reaches it.
  void selectScrollArea(platform::WKWebView& webView);

  void previousClicked(std::string_view text, platform::WKWebView& webView);
  void nextClicked(std::string_view text, platform::WKWebView& webView);
  void stopFinding(std::string_view text, platform::WKWebView& webView);
  /// Finds the first hit and goes on to the next. `onResult` hears whether there is one; it isn't called if
  /// the script fails.
  void startFinding(std::string_view text, const std::shared_ptr<platform::WKWebView>& webView,
                    std::function<void(bool isFound)> onResult);

  /// The text is percent-encoded as in an address's query, blanks included: so a page is searched for that
  /// form.
  static std::string getFindScript(std::string_view text, WebViewFindType type);

 private:
  bool shouldSubmitButtonScript(const platform::WKWebView& webView) const;
};

}  // namespace velkin
