#include "Platform/WKWebView.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "Platform/WebArchive.h"

#include <utility>

namespace platform {

WKWebView::ScriptCompletion WKWebView::logFailure(std::string words) {
  return [words = std::move(words)](const std::optional<std::string>&, const std::optional<NSError>& error) {
    if (error) debugLog(words + scriptErrorForLog(*error));
  };
}

void WKWebView::createWebArchiveData(DataCompletion completion) {
  createMHTMLData([completion = std::move(completion)](tl::expected<std::string, NSError> mhtml) {
    if (!mhtml) return completion(std::move(mhtml));
    auto archive = webArchiveFromMHTML(*mhtml);
    if (!archive)
      return completion(tl::unexpected(NSError{"WebKitErrorDomain", 1, "The page has no content"}));
    completion(*std::move(archive));
  });
}

}  // namespace platform
