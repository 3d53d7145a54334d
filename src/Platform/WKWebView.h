#pragma once

#include "Platform/NSError.h"
#include "Platform/NSPrintInfo.h"
#include "Platform/NSView.h"
#include "Platform/URL.h"
#include "Platform/URLRequest.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tl/expected.hpp>

namespace platform {

class WKWebView;

enum class WKContentMode : int { recommended = 0, mobile = 1, desktop = 2 };

struct WKWebpagePreferences {
  bool allowsContentJavaScript = true;
  WKContentMode preferredContentMode = WKContentMode::recommended;
};

/// A script that every page runs.
struct WKUserScript {
  enum class InjectionTime { atDocumentStart, atDocumentEnd };
  std::string source;
  InjectionTime injectionTime = InjectionTime::atDocumentEnd;
  bool forMainFrameOnly = true;
};

/// Told of what a page posts under a name. Main thread.
class WKScriptMessageHandler {
 public:
  virtual ~WKScriptMessageHandler() = default;
  /// `body` is what the page posted, as JSON text.
  virtual void didReceiveScriptMessage(const std::string& name, const std::string& body) = 0;
};

/// Scripts and message handlers of the web views that are made with it. What is added later holds from the
/// next page on.
struct WKUserContentController {
  std::vector<WKUserScript> userScripts;
  std::vector<std::pair<std::string, WKScriptMessageHandler*>> messageHandlers;

  void addUserScript(WKUserScript script) { userScripts.push_back(std::move(script)); }
  void addScriptMessageHandler(WKScriptMessageHandler& handler, std::string name) {
    messageHandlers.emplace_back(std::move(name), &handler);
  }
};

struct WKPreferences {
  bool developerExtrasEnabled = false;
};

/// Web views that are made with the same one share a process. For pages of the program's own only: what one
/// page does to its process, it does to all.
class WKProcessPool {
 public:
  /// Those that are there now, as their platform knows them.
  std::vector<void*> views;
};

/// What a web view is made with.
struct WKWebViewConfiguration {
  WKWebpagePreferences defaultWebpagePreferences;
  WKPreferences preferences;
  WKUserContentController userContentController;
  /// False keeps the page's cookies and storage out of the program's persistent store.
  bool usesPersistentDataStore = true;
  /// For text that nobody vouches for: its page reaches nothing. It loads nothing, opens no window, downloads
  /// nothing, gets no permission, and runs no script but those below.
  bool isIsolated = false;
  /// What may run in an isolated page beside user scripts: texts of script elements and of event handlers, to
  /// the letter.
  std::vector<std::string> isolatedScripts;
  /// An isolated page may show pictures from elsewhere, over https. It is then the user's own text, which may
  /// also stay on view while the next state of it loads.
  bool isolatedPictures = false;
  /// nullptr: a process of its own.
  std::shared_ptr<WKProcessPool> processPool;
};

enum class WKNavigationType { linkActivated, formSubmitted, backForward, reload, formResubmitted, other };

/// Where a page wants to go.
struct WKNavigationAction {
  URL url;
  /// `linkActivated` for a link that the user clicked; one that a script clicks is `other`.
  WKNavigationType navigationType = WKNavigationType::other;
};

enum class WKNavigationActionPolicy { cancel, allow };

/// Told of a web view's loading. Main thread.
class WKNavigationDelegate {
 public:
  virtual ~WKNavigationDelegate() = default;
  /// Asked before the view, or a frame or a new window of its page, goes anywhere.
  virtual WKNavigationActionPolicy decidePolicyFor(WKWebView&, const WKNavigationAction&) {
    return WKNavigationActionPolicy::allow;
  }
  virtual void didFinish(WKWebView&) {}
  virtual void didFail(WKWebView&, const NSError&) {}
};

/// Who answers for a web view's windows and dialogues. What it doesn't answer, the engine does.
class WKUIDelegate {
 public:
  virtual ~WKUIDelegate() = default;
  /// The page begins anew, by the user's hand in its menu or because its process died.
  virtual void didReload(WKWebView&) {}
};

struct WKPDFConfiguration {
  /// Points, on each side.
  double margin = 10;
};

/// A page. The engine behind it starts when a page is first loaded or shown. Main thread.
class WKWebView : public NSView {
 public:
  static std::unique_ptr<WKWebView> make(NSRect frame, WKWebViewConfiguration configuration);

  WKUIDelegate* uiDelegate = nullptr;
  WKNavigationDelegate* navigationDelegate = nullptr;

  virtual const WKWebViewConfiguration& configuration() const = 0;

  /// A page holds no other views.
  void addSubview(NSView&, std::optional<NSSize>) override {}
  void removeSubview(NSView&) override {}

  /// The address that was loaded last, or is being loaded; nothing before the first.
  virtual std::optional<URL> url() const = 0;
  virtual std::string title() const = 0;
  virtual bool isLoading() const = 0;

  virtual void load(const URLRequest& request) = 0;
  virtual void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) = 0;
  virtual void reload() = 0;
  /// Past every cache.
  virtual void reloadFromOrigin() = 0;
  virtual void stopLoading() = 0;
  virtual bool canGoBack() const = 0;
  virtual bool canGoForward() const = 0;
  virtual void goBack() = 0;
  virtual void goForward() = 0;

  /// As by the page keys, wherever the page's focus is.
  virtual void scrollPageUp() = 0;
  virtual void scrollPageDown() = 0;

  virtual double pageZoom() const = 0;
  virtual void setPageZoom(double zoom) = 0;
  /// Empty: the engine's own.
  virtual std::string customUserAgent() const = 0;
  virtual void setCustomUserAgent(std::string userAgent) = 0;

  bool allowsMagnification = false;
  bool allowsLinkPreview = false;
  virtual bool allowsBackForwardNavigationGestures() const = 0;
  virtual void setAllowsBackForwardNavigationGestures(bool isAllowed) = 0;

  /// Runs `script` in the page. The completion gets its value as JSON text (empty for one that has none), or
  /// the error.
  using ScriptCompletion =
      std::function<void(const std::optional<std::string>& json, const std::optional<NSError>& error)>;
  virtual void evaluateJavaScript(const std::string& script, ScriptCompletion completion = {}) = 0;
  /// A completion that logs why a script failed, behind the words given, and nothing else.
  static ScriptCompletion logFailure(std::string words = "Error evaluating JavaScript: ");

  /// Gets the file's bytes, or the error; never in the same turn, and not any more once the view has gone.
  using DataCompletion = std::function<void(tl::expected<std::string, NSError>)>;
  /// The page as it would be printed, on the paper that is usual here.
  virtual void createPDF(const WKPDFConfiguration& configuration, DataCompletion completion) = 0;
  /// The page as it is now with all that it shows, in the engine's own form.
  virtual void createMHTMLData(DataCompletion completion) = 0;
  /// Shows the print dialogue for the page, which must be in a window; `ended` comes when the user has
  /// answered, or at once where there is nobody to ask or one is open already.
  virtual void printOperation(const NSPrintInfo& info, std::function<void()> ended) = 0;
  /// What `createMHTMLData` gives, as a web archive.
  void createWebArchiveData(DataCompletion completion);
};

}  // namespace platform
