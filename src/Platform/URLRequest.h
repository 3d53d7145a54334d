#pragma once

#include "Platform/URL.h"

#include <cstddef>
#include <map>
#include <string>

namespace platform {

enum class NSURLRequestCachePolicy { useProtocolCachePolicy, reloadIgnoringLocalCacheData };

/// What is asked of an HTTP server, by the URL session or by a web view.
struct URLRequest {
  URL url;
  std::string httpMethod = "GET";
  /// Header fields by name, as the request gives them.
  std::map<std::string, std::string> allHTTPHeaderFields = {};
  std::string httpBody = {};
  /// Seconds without an answer until the request fails.
  double timeoutInterval = 60;
  bool httpShouldHandleCookies = true;
  bool allowsExpensiveNetworkAccess = true;
  NSURLRequestCachePolicy cachePolicy = NSURLRequestCachePolicy::useProtocolCachePolicy;
  /// How many bytes of an answer, unpacked, the URL session takes; a longer one fails with
  /// `NSURLErrorDataLengthExceedsMaximum`, and no more of it is read.
  std::size_t longestAnswer = std::size_t{16} << 20U;

  bool operator==(const URLRequest&) const = default;
};

}  // namespace platform
