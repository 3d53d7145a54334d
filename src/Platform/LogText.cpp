#include "Platform/LogText.h"

#include "Platform/NSError.h"
#include "Platform/URL.h"
#include "Platform/UTF8.h"

#include <array>
#include <cctype>

namespace platform {

namespace {

constexpr std::size_t mostCharacters = 200;
constexpr std::string_view ellipsis = "…";

/// The errors that the language itself knows; a page may throw anything and call it what it likes.
constexpr std::array<std::string_view, 7> scriptErrors = {
    "SyntaxError", "TypeError", "ReferenceError", "RangeError", "SecurityError", "EvalError", "URIError"};

/// Control characters, line and paragraph separators, and the marks that turn a line's direction.
bool isControl(char32_t c) noexcept {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029 || c == 0x200E || c == 0x200F ||
         c == 0x061C || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string cleanLine(std::string_view line, std::size_t most) {
  std::string result;
  for (std::size_t count = 0; !line.empty();) {
    const auto character = takeCharacter(line).value_or(replacementCharacter);
    if (isControl(character)) continue;
    if (count++ == most) return result.append(ellipsis);
    appendUTF8(result, character);
  }
  return result;
}

std::string forLog(std::string_view text) { return cleanLine(text, mostCharacters); }

std::string addressForLog(std::string_view address) {
  const auto colon = address.find(':');
  if (colon == address.npos) return "an address of another form";
  const auto scheme = address.substr(0, colon);
  for (const char c : scheme) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '+' && c != '-' && c != '.')
      return "an address of another form";
  }
  std::string result(scheme.substr(0, 40));
  result += ':';
  auto rest = address.substr(colon + 1);
  if (rest.starts_with("//")) {
    auto authority = rest.substr(2, rest.find_first_of("/?#\\", 2) - 2);
    rest.remove_prefix(2 + authority.size());
    // Who logs in so has their password before the host.
    if (const auto at = authority.rfind('@'); at != authority.npos) authority.remove_prefix(at + 1);
    result.append("//").append(authority);
    if (rest == "/") rest = {};
  } else if (address == "about:blank") {
    return std::string(address);
  }
  if (!rest.empty()) result.append(ellipsis);
  return forLog(result);
}

std::string scriptErrorForLog(const NSError& error) {
  std::string result = forLog(error.domain) + " " + std::to_string(error.code);
  for (const auto name : scriptErrors) {
    if (error.localizedDescription.find(name) != std::string::npos) return result.append(", ").append(name);
  }
  return result;
}

std::string lengthForLog(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); ++count) takeCharacter(text);
  return "a text of " + std::to_string(count) + (count == 1 ? " character" : " characters");
}

}  // namespace platform
