#include "extenstions/URLReachable.h"

#include <string>
#include <utility>

namespace velkin {

std::unique_ptr<platform::NSURLSessionDataTask> isReachable(const platform::URL& url,
                                                            std::function<void(bool)> completion,
                                                            std::string_view userAgent) {
  platform::URLRequest request{.url = url, .httpMethod = "HEAD", .timeoutInterval = 60};
  if (!userAgent.empty()) request.allHTTPHeaderFields["User-Agent"] = std::string(userAgent);
  return platform::NSURLSession::shared().dataTask(
      std::move(request),
      [completion = std::move(completion)](
          const std::optional<std::string>&, const std::optional<platform::HTTPURLResponse>& response,
          const std::optional<platform::NSError>&) { completion(response && response->statusCode == 200); });
}

}  // namespace velkin
