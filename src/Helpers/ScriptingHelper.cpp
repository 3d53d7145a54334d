#include "Helpers/ScriptingHelper.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "extenstions/PercentEncoding.h"

namespace velkin {

using platform::debugLog;
using platform::lengthForLog;
using platform::NSError;
using platform::scriptErrorForLog;
using platform::WKWebView;

namespace {

// A constant can't be declared twice in one page: so the whole script runs once in each, and its last line
// alone after that.
constexpr const char* submitScript =
    "// find the button element that is a sibling of the text area\n"
    "const textAreas = document.querySelectorAll('form .m-0');\n"
    "const textArea = textAreas[textAreas.length - 1];\n"
    "const submitButton = textArea.nextSibling;\n"
    "\n"
    "while (submitButton && submitButton.nodeType !== Node.ELEMENT_NODE) {\n"
    " // skip non-element nodes (e.g. text nodes)\n"
    "    submitButton = submitButton.nextSibling;\n"
    "}\n"
    "\n"
    "submitButton.click()";
constexpr const char* submitAgainScript = "submitButton.click()";
constexpr const char* scrollAreaScript =
    "var flexElement = document.querySelector('.flex.w-full');\n"
    "flexElement.click();";

/// The script of a search holds the text in single quotes, as it stands. One with such a quote is a script
/// that fails, or one that does what the text says: it is never run.
bool endsItsLiteral(std::string_view text) { return text.find('\'') != text.npos; }

NSError endedLiteral() { return {"WKErrorDomain", 4, "SyntaxError"}; }

void tellFailedSearch(std::string_view text, const NSError& error) {
  debugLog("Error searching for " + lengthForLog(text) + ": " + scriptErrorForLog(error));
}

}  // namespace

void ScriptingHelper::submitForm(const std::shared_ptr<WKWebView>& webView) {
  if (defaults.lastVisibleWebView() != WebViewSwitchType::chatgpt) return;
  const char* script = shouldSubmitButtonScript(*webView) ? submitAgainScript : submitScript;
  webView->evaluateJavaScript(
      script, [weak = weak_from_this(), weakPage = std::weak_ptr(webView),
               logFailure = WKWebView::logFailure("Q$: ScriptingHelper::submitForm() JavaScript error: ")](
                  const auto&, const std::optional<NSError>& error) {
        const auto self = weak.lock();
        if (!self) return;
        const auto page = weakPage.lock();
        const auto url = page ? page->url() : std::nullopt;
        self->currentWebUrl = url ? url->absoluteString() : "";
        self->chatSubmitClicked = true;
        logFailure({}, error);
      });
}

bool ScriptingHelper::shouldSubmitButtonScript(const WKWebView& webView) const {
  const auto url = webView.url();
  return chatSubmitClicked && url && url->absoluteString() == currentWebUrl;
}

void ScriptingHelper::pageReloaded() {
  if (defaults.lastVisibleWebView() == WebViewSwitchType::chatgpt) chatSubmitClicked = false;
}

void ScriptingHelper::selectScrollArea(WKWebView& webView) {
  webView.evaluateJavaScript(scrollAreaScript);
  webView.scrollPageUp();
}

void ScriptingHelper::previousClicked(std::string_view text, WKWebView& webView) {
  if (endsItsLiteral(text)) return;
  webView.evaluateJavaScript(getFindScript(text, WebViewFindType::previous));
}

void ScriptingHelper::nextClicked(std::string_view text, WKWebView& webView) {
  if (endsItsLiteral(text)) return;
  webView.evaluateJavaScript(getFindScript(text, WebViewFindType::next));
}

void ScriptingHelper::stopFinding(std::string_view, WKWebView& webView) {
  webView.evaluateJavaScript(getFindScript("", WebViewFindType::done));
}

void ScriptingHelper::startFinding(std::string_view text, const std::shared_ptr<WKWebView>& webView,
                                   std::function<void(bool)> onResult) {
  if (endsItsLiteral(text)) return tellFailedSearch(text, endedLiteral());
  webView->evaluateJavaScript(
      getFindScript(text, WebViewFindType::find),
      [self = shared_from_this(), weak = std::weak_ptr(webView), text = std::string(text),
       onResult = std::move(onResult)](const std::optional<std::string>& json,
                                       const std::optional<NSError>& error) {
        if (json == "true" || json == "false") {
          const bool isFound = json == "true";
          onResult(isFound);
          if (const auto page = weak.lock(); isFound && page) self->nextClicked(text, *page);
          if (!isFound) debugLog("No results found for " + lengthForLog(text));
        }
        if (error) tellFailedSearch(text, *error);
      });
}

std::string ScriptingHelper::getFindScript(std::string_view text, WebViewFindType type) {
  const auto encoded = addingPercentEncodingForQuery(text);
  if (!encoded) return {};
  switch (type) {
    case WebViewFindType::next:
    case WebViewFindType::find:
      return "window.find('" + *encoded + "', false, false, true, true, true);";
    case WebViewFindType::previous:
      return "window.find('" + *encoded + "', false, true, true, true, true);";
    case WebViewFindType::done:
      break;
  }
  return "window.stop();";
}

}  // namespace velkin
