#include "extenstions/URLReachable.h"

#include "Platform/NSURLSession.h"

#include <utility>

namespace velkin {

void isReachable(const platform::URL& url, std::function<void(bool)> completion) {
  platform::NSURLSession::shared().dataTask(
      platform::URLRequest{.url = url, .httpMethod = "HEAD", .timeoutInterval = 60},
      [completion = std::move(completion)](
          const std::optional<std::string>&, const std::optional<platform::HTTPURLResponse>& response,
          const std::optional<platform::NSError>&) { completion(response && response->statusCode == 200); });
}

}  // namespace velkin
