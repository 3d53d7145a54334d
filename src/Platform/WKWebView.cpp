#include "Platform/WKWebView.h"

#include "Platform/WebArchive.h"

namespace platform {

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
