#pragma once

#include "Platform/NSURLSession.h"
#include "Platform/URL.h"

#include <functional>
#include <memory>
#include <string_view>

namespace velkin {

/// Asks whether `url` answers a HEAD request, redirects followed, with exactly the status 200, as the browser
/// `userAgent` unless that is empty. `completion` is called once, on the URL session's background thread: who
/// touches views there returns to the main queue first. The result can end the request, which then isn't
/// reachable; dropping it lets the request go on.
std::unique_ptr<platform::NSURLSessionDataTask> isReachable(const platform::URL& url,
                                                            std::function<void(bool)> completion,
                                                            std::string_view userAgent = {});

}  // namespace velkin
