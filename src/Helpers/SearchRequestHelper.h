#pragma once

#include "Platform/NSError.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

namespace platform {
struct HTTPURLResponse;
}

namespace velkin {

/// Asks the chat-completions service one question: one call is one HTTP request, which is neither repeated
/// nor cancelled. The answer is Markdown.
class SearchRequestHelper {
 public:
  using Result = tl::expected<std::string, platform::NSError>;

  /// Returns at once. `completion` is called exactly once, on the URL session's background thread. A failure
  /// in our own words is an error whose domain is those words and whose code is -1. Any thread.
  void chatGPTRequest(const std::string& prompt, const std::string& apiKey,
                      std::function<void(Result)> completion) const;

  /// The request's body: JSON in one line.
  static std::string body(const std::string& prompt);
  /// What becomes of the session's answer.
  static Result read(const std::optional<std::string>& data,
                     const std::optional<platform::HTTPURLResponse>& response,
                     const std::optional<platform::NSError>& error);
};

}  // namespace velkin
