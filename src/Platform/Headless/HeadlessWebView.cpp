#include "Platform/Headless/HeadlessWebView.h"

#include "Platform/DispatchQueue.h"

namespace platform {

void HeadlessWebView::load(const URLRequest& request) {
  loads.push_back(request);
  if (url_) backList.push_back(*url_);
  forwardList.clear();
  url_ = request.url;
}

void HeadlessWebView::loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) {
  htmlLoads.push_back(html);
  url_ = baseURL ? baseURL : URL::parse("about:blank");
}

void HeadlessWebView::goBack() {
  if (backList.empty()) return;
  if (url_) forwardList.push_back(*url_);
  url_ = backList.back();
  backList.pop_back();
}

void HeadlessWebView::goForward() {
  if (forwardList.empty()) return;
  if (url_) backList.push_back(*url_);
  url_ = forwardList.back();
  forwardList.pop_back();
}

void HeadlessWebView::evaluateJavaScript(const std::string& script, ScriptCompletion completion) {
  scripts.push_back(script);
  if (completion) completion(scriptError ? std::nullopt : scriptResult, scriptError);
}

void HeadlessWebView::createPDF(const WKPDFConfiguration&, DataCompletion completion) {
  if (!pdf) return;
  DispatchQueue::main().async([completion = std::move(completion), data = *pdf] { completion(data); });
}

void HeadlessWebView::createMHTMLData(DataCompletion completion) {
  if (!mhtml) return;
  DispatchQueue::main().async([completion = std::move(completion), data = *mhtml] { completion(data); });
}

}  // namespace platform
