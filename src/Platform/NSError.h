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

/// As it is shown where an error is printed: `Error Domain=<domain> Code=<code> "<words>"`, with (null) for
/// no words.
inline std::string description(const NSError& error) {
  return "Error Domain=" + error.domain + " Code=" + std::to_string(error.code) + " \"" +
         (error.localizedDescription.empty() ? std::string("(null)") : error.localizedDescription) + '"';
}

/// The domain of what reading a text's form fails with, and its code.
inline constexpr const char* NSCocoaErrorDomain = "NSCocoaErrorDomain";
inline constexpr int NSPropertyListReadCorruptError = 3840;

/// The domain of what a URL session fails with, and its codes.
inline constexpr const char* NSURLErrorDomain = "NSURLErrorDomain";
inline constexpr int NSURLErrorCancelled = -999;
inline constexpr int NSURLErrorTimedOut = -1001;
inline constexpr int NSURLErrorCannotFindHost = -1003;
inline constexpr int NSURLErrorCannotConnectToHost = -1004;
inline constexpr int NSURLErrorNetworkConnectionLost = -1005;
inline constexpr int NSURLErrorHTTPTooManyRedirects = -1007;
inline constexpr int NSURLErrorDataLengthExceedsMaximum = -1103;
inline constexpr int NSURLErrorSecureConnectionFailed = -1200;

}  // namespace platform
