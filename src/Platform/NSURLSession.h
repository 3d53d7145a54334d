#pragma once

#include "Platform/NSError.h"
#include "Platform/URLRequest.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace platform {

struct HTTPURLResponse {
  int statusCode = 200;
  std::map<std::string, std::string> allHeaderFields = {};
  /// Where the answer came from: after redirects, not the request's address.
  URL url;

  bool operator==(const HTTPURLResponse&) const = default;
};

/// A request under way. Dropping it lets the request go on.
class NSURLSessionDataTask {
 public:
  virtual ~NSURLSessionDataTask() = default;
  /// Ends the request; the completion then gets the error `NSURLErrorCancelled`. Nothing once it is done. Any
  /// thread.
  virtual void cancel() = 0;
};

/// The HTTP client.
class NSURLSession {
 public:
  /// The answer's body, the response if it is HTTP's, and why there is none. After an error there is no body.
  using Completion =
      std::function<void(std::optional<std::string> data, std::optional<HTTPURLResponse> response,
                         std::optional<NSError> error)>;

  /// The session of the installed platform.
  static NSURLSession& shared();

  virtual ~NSURLSession() = default;

  /// Starts `request` at once, follows redirects, and calls `completion` exactly once, on the session's own
  /// background thread. Any thread.
  virtual std::unique_ptr<NSURLSessionDataTask> dataTask(URLRequest request, Completion completion) = 0;
};

}  // namespace platform
