#pragma once

#include <string>

namespace platform {

/// A failure that is a value: in which domain, which one there, and in words.
struct NSError {
  std::string domain;
  int code = 0;
  std::string localizedDescription = {};

  bool operator==(const NSError&) const = default;
};

/// The domain of what a URL session fails with, and its codes.
inline constexpr const char* NSURLErrorDomain = "NSURLErrorDomain";
inline constexpr int NSURLErrorCancelled = -999;
inline constexpr int NSURLErrorTimedOut = -1001;
inline constexpr int NSURLErrorCannotFindHost = -1003;
inline constexpr int NSURLErrorCannotConnectToHost = -1004;
inline constexpr int NSURLErrorNetworkConnectionLost = -1005;
inline constexpr int NSURLErrorHTTPTooManyRedirects = -1007;
inline constexpr int NSURLErrorSecureConnectionFailed = -1200;

}  // namespace platform
