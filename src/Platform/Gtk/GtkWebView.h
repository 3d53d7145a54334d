#pragma once

#include "Platform/Alive.h"
#include "Platform/CrashReloadPolicy.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkViewBase.h"
#include "Platform/Gtk/LoadWatch.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/WKWebView.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

/// A web view whose engine widget is made when a page is first loaded or shown. Main thread.
class GtkWebView : public WKWebView, public GtkViewBase {
 public:
  GtkWebView(NSRect frame, WKWebViewConfiguration configuration, WebEngine& (*engine)());
  ~GtkWebView() override;
  GtkWebView(const GtkWebView&) = delete;
  GtkWebView& operator=(const GtkWebView&) = delete;

  GtkWidget* widget() override;
  NSRect frame() const override;
  void makeFirstResponder() override;

  const WKWebViewConfiguration& configuration() const override { return configuration_; }
  std::optional<URL> url() const override;
  std::string title() const override;
  bool isLoading() const override;
  void load(const URLRequest& request) override;
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) override;
  void reload() override;
  void reloadFromOrigin() override;
  void stopLoading() override;
  bool canGoBack() const override;
  bool canGoForward() const override;
  void goBack() override;
  void goForward() override;
  void scrollPageUp() override;
  void scrollPageDown() override;
  double pageZoom() const override { return zoom_; }
  void setPageZoom(double zoom) override;
  std::string customUserAgent() const override { return userAgent_; }
  void setCustomUserAgent(std::string userAgent) override;
  bool allowsBackForwardNavigationGestures() const override { return allowsGestures_; }
  void setAllowsBackForwardNavigationGestures(bool isAllowed) override;
  void evaluateJavaScript(const std::string& script, ScriptCompletion completion) override;
  void createPDF(const WKPDFConfiguration& configuration, DataCompletion completion) override;
  void createMHTMLData(DataCompletion completion) override;
  void printOperation(const NSPrintInfo& info, std::function<void()> ended) override;

 private:
  WebKitWebView* engineView();
  void addUserContent();
  void connectSignals();
  void onMapped();
  bool isNavigationCancelled(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
  void applyZoom();
  void processTerminated(WebKitWebProcessTerminationReason reason);
  void showCrashPage();
  void reloadInNewProcess();
  void startLoad(const std::function<void()>& load, std::function<void()> loadInNewProcess);
  void endProcess();
  void showWhenPainted();
  void loadChanged(WebKitLoadEvent event);
  void whenDocumentIsThere(std::function<void()> action);
  DataCompletion whileAlive(DataCompletion completion) const;

  NSRect frame_;
  WKWebViewConfiguration configuration_;
  WebEngine& (*engine_)();
  GObjectPtr<GtkWidget> holder_;
  GObjectPtr<WebKitSettings> settings_;
  GObjectPtr<WebKitUserContentManager> userContent_;
  GObjectPtr<WebKitWebView> view_;
  std::optional<URL> url_;
  double zoom_ = 1;
  std::string userAgent_;
  bool allowsGestures_ = false;
  /// The keyboard was asked for while the view wasn't on show.
  bool wantsFocus_ = false;
  CrashReloadPolicy crashPolicy_;
  /// None for an isolated view, whose pages come from the program.
  std::unique_ptr<LoadWatch> loadWatch_;
  /// What the user asked for and the page's process hasn't begun yet, as a new process has to do it.
  std::function<void()> awaitedLoad_;
  /// A page was asked for, and its process, which may have to start first, has none yet.
  bool awaitsDocument_ = false;
  std::vector<std::function<void()>> waitingForDocument_;
  /// The page's own document came as the answer to a form.
  bool isRespondingToForm_ = false;
  /// Of an isolated view: the page that it was handed last.
  std::string ownPage_;
  Alive isAlive_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
};

}  // namespace platform
