#include "Helpers/SearchRequestHelper.h"

#include "Platform/FatalError.h"
#include "Platform/NSURLSession.h"
#include "Platform/UTF8.h"
#include "Values/ServiceAddresses.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

namespace velkin {

using platform::NSError;

namespace {

constexpr const char* model = "gpt-3.5-turbo";
constexpr double temperature = 0.3;
constexpr int statusOK = 200;

tl::unexpected<NSError> failure(std::string words) {
  return tl::unexpected(NSError{.domain = std::move(words), .code = -1});
}

/// The member of an object; nullptr if `value` is none or has no such member.
const nlohmann::json* member(const nlohmann::json* value, const char* name) {
  if (value == nullptr || !value->is_object()) return nullptr;
  const auto found = value->find(name);
  return found != value->end() ? &*found : nullptr;
}

/// The platform's set of white space and newlines: Unicode's separators, the tab, and the line breaks.
bool isWhitespaceOrNewline(char32_t c) {
  return c == 0x20 || (c >= 0x09 && c <= 0x0D) || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200B) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

std::string trimmed(std::string_view text) {
  std::string_view rest = text;
  std::size_t start = text.size();
  std::size_t end = 0;
  while (!rest.empty()) {
    const auto at = text.size() - rest.size();
    const auto character = platform::takeCharacter(rest);
    if (character && isWhitespaceOrNewline(*character)) continue;
    if (start == text.size()) start = at;
    end = text.size() - rest.size();
  }
  return start < end ? std::string(text.substr(start, end - start)) : std::string();
}

}  // namespace

std::string SearchRequestHelper::body(const std::string& prompt) {
  const nlohmann::json body = {{"model", model},
                               {"messages", {{{"role", "user"}, {"content", prompt}}}},
                               {"temperature", temperature}};
  // A prompt that is no UTF-8 can't come from a text field; what is wrong in it is replaced.
  return body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

SearchRequestHelper::Result SearchRequestHelper::read(
    const std::optional<std::string>& data, const std::optional<platform::HTTPURLResponse>& response,
    const std::optional<NSError>& error) {
  if (error) return tl::unexpected(*error);
  if (!data) return failure("No data received");
  if (response && response->statusCode != statusOK) {
    return failure("HTTP Status Code: " + std::to_string(response->statusCode));
  }
  const auto document = nlohmann::json::parse(*data, nullptr, false);
  if (document.is_discarded()) {
    return tl::unexpected(NSError{platform::NSCocoaErrorDomain, platform::NSPropertyListReadCorruptError,
                                  "The data couldn’t be read because it isn’t in the correct format."});
  }
  const auto* choices = member(&document, "choices");
  const bool isArrayOfObjects =
      choices != nullptr && choices->is_array() && !choices->empty() &&
      std::ranges::all_of(*choices, [](const auto& one) { return one.is_object(); });
  const auto* first = isArrayOfObjects ? &choices->front() : nullptr;
  const auto* content = member(member(first, "message"), "content");
  if (content == nullptr || !content->is_string()) return failure("Invalid JSON");
  return trimmed(content->get_ref<const std::string&>());
}

void SearchRequestHelper::chatGPTRequest(const std::string& prompt, const std::string& apiKey,
                                         std::function<void(Result)> completion) const {
  const platform::URLRequest request{
      .url = platform::unwrap(platform::URL::parse(serviceAddresses.chatCompletions)),
      .httpMethod = "POST",
      .allHTTPHeaderFields = {{"Content-Type", "application/json"}, {"Authorization", "Bearer " + apiKey}},
      .httpBody = body(prompt)};
  platform::NSURLSession::shared().dataTask(
      request,
      [completion = std::move(completion)](
          const std::optional<std::string>& data, const std::optional<platform::HTTPURLResponse>& response,
          const std::optional<NSError>& error) { completion(read(data, response, error)); });
}

}  // namespace velkin
