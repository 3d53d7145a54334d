#pragma once

#include "Platform/URL.h"

#include <functional>

namespace velkin {

/// Asks whether `url` answers a HEAD request, redirects followed, with exactly the status 200. `completion`
/// is called once, on the URL session's background thread: who touches views there returns to the main queue
/// first.
void isReachable(const platform::URL& url, std::function<void(bool)> completion);

}  // namespace velkin
