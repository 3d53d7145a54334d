#pragma once

#include "Platform/WKWebView.h"

#include <string>
#include <utility>
#include <vector>

namespace platform {

/// A page without an engine: it has the address that it was told to load, and remembers what was done to it.
class HeadlessWebView : public WKWebView {
 public:
  HeadlessWebView(NSRect frame, WKWebViewConfiguration configuration)
      : frame_(frame), configuration_(std::move(configuration)) {}

  std::vector<URLRequest> loads;
  std::vector<std::string> htmlLoads;
  std::vector<std::string> scripts;
  int reloads = 0;
  int reloadsFromOrigin = 0;
  int pagesUp = 0;
  int pagesDown = 0;
  bool isFirstResponder = false;
  /// A load that takes its time.
  bool isUnderWay = false;
  /// What the next scripts give, as JSON text, or the error that they end with.
  std::optional<std::string> scriptResult;
  std::optional<NSError> scriptError;
  std::vector<URL> backList;
  std::vector<URL> forwardList;

  NSRect frame() const override { return frame_; }
  void makeFirstResponder() override { isFirstResponder = true; }
  const WKWebViewConfiguration& configuration() const override { return configuration_; }
  std::optional<URL> url() const override { return url_; }
  std::string title() const override { return {}; }
  bool isLoading() const override { return isUnderWay; }
  void load(const URLRequest& request) override;
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) override;
  void reload() override { ++reloads; }
  void reloadFromOrigin() override { ++reloadsFromOrigin; }
  void stopLoading() override {}
  bool canGoBack() const override { return !backList.empty(); }
  bool canGoForward() const override { return !forwardList.empty(); }
  void goBack() override;
  void goForward() override;
  void scrollPageUp() override { ++pagesUp; }
  void scrollPageDown() override { ++pagesDown; }
  double pageZoom() const override { return zoom_; }
  void setPageZoom(double zoom) override { zoom_ = zoom; }
  std::string customUserAgent() const override { return userAgent_; }
  void setCustomUserAgent(std::string userAgent) override { userAgent_ = std::move(userAgent); }
  bool allowsBackForwardNavigationGestures() const override { return gestures_; }
  void setAllowsBackForwardNavigationGestures(bool isAllowed) override { gestures_ = isAllowed; }
  void evaluateJavaScript(const std::string& script, ScriptCompletion completion) override;
  /// What the next saving gives, in a later turn; with neither a page that doesn't answer.
  std::optional<tl::expected<std::string, NSError>> pdf;
  std::optional<tl::expected<std::string, NSError>> mhtml;
  void createPDF(const WKPDFConfiguration& configuration, DataCompletion completion) override;
  void createMHTMLData(DataCompletion completion) override;
  std::vector<NSPrintInfo> printOperations;
  /// Of the print dialogues that are open.
  std::vector<std::function<void()>> printAnswers;
  void printOperation(const NSPrintInfo& info, std::function<void()> ended) override {
    printOperations.push_back(info);
    printAnswers.push_back(std::move(ended));
  }

 private:
  NSRect frame_;
  WKWebViewConfiguration configuration_;
  std::optional<URL> url_;
  double zoom_ = 1;
  std::string userAgent_;
  bool gestures_ = false;
};

}  // namespace platform
