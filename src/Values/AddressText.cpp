#include "Values/AddressText.h"

#include <algorithm>

namespace velkin {

namespace {

constexpr std::string_view blanks = " \t\r\n\f\v";
constexpr std::string_view unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
constexpr std::string_view reserved = ":/?#[]@!$&'()*+,;=";
constexpr std::string_view hexDigits = "0123456789ABCDEFabcdef";

bool isIn(std::string_view set, char c) { return set.find(c) != std::string_view::npos; }

std::string encoded(std::string_view text, bool keepsReserved) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isEscape =
        c == '%' && i + 2 < text.size() && isIn(hexDigits, text[i + 1]) && isIn(hexDigits, text[i + 2]);
    if (isIn(unreserved, c) || (keepsReserved && (isIn(reserved, c) || isEscape))) {
      result += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    result += '%';
    result += hexDigits[byte >> 4U];
    result += hexDigits[byte & 0xFU];
  }
  return result;
}

}  // namespace

std::string trimmedAddress(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

bool isWebAddress(const platform::URL& url) {
  auto scheme = url.scheme().value_or("");
  for (auto& c : scheme) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return (scheme == "http" || scheme == "https") && url.host().has_value();
}

bool isWebAddress(std::string_view text) {
  const auto url = platform::URL::parse(text);
  return url && isWebAddress(*url);
}

std::string storableAddress(std::string_view text) {
  auto trimmed = trimmedAddress(text);
  if (trimmed.empty() || platform::URL::parse(trimmed)) return trimmed;
  auto gentle = encoded(trimmed, true);
  // Some characters are an address's own and still may not stand where they do: a bracket, a second "#".
  return platform::URL::parse(gentle) ? gentle : encoded(trimmed, false);
}

}  // namespace velkin
