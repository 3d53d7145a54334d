#include "Components/MarkdownHtmlHelper.h"
#include "Helpers/SearchRequestHelper.h"
#include "MarkdownEngine/ValidUtf8.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSURLSession.h"
#include "fuzz/support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

using fuzz::require;

/// Whatever a server answers: no crash; an answer, or an error that says something; and what becomes of an
/// answer is a page and can be stored. The bytes are the body, and the text in a body of the right shape.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::HeadlessPlatform desktop;
  static const auto parser = velkin::MarkdownHtmlHelper::makeParser();
  const std::string input(reinterpret_cast<const char*>(data), size);
  const platform::HTTPURLResponse response{200, {}, *platform::URL::parse("https://h.test/")};

  const auto check = [](const velkin::SearchRequestHelper::Result& result) {
    if (!result) {
      require(!result.error().domain.empty(), "an error says where it is from");
      return;
    }
    const auto html = parser.html(*result);
    require(markdown::ValidUtf8(html).wasValid(), "the HTML is valid UTF-8");
    const auto page = velkin::MarkdownHtmlHelper(false).makeHTMLString(html);
    require(page.find(html) != std::string::npos, "the page holds it");
  };
  check(velkin::SearchRequestHelper::read(input, response, std::nullopt));

  const nlohmann::json body = {{"choices", {{{"message", {{"content", input}}}}}}};
  const auto text = body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  const auto result = velkin::SearchRequestHelper::read(text, response, std::nullopt);
  require(result.has_value(), "a body of the right shape is an answer");
  check(result);

  const auto sent = nlohmann::json::parse(velkin::SearchRequestHelper::body(input), nullptr, false);
  require(!sent.is_discarded(), "a request's body is JSON");
  require(sent["messages"].size() == 1 && sent["messages"][0]["role"] == "user", "a prompt stays a prompt");
  return 0;
}
