#include "extenstions/PercentEncoding.h"

#include "Platform/UTF8.h"

namespace velkin {

namespace {

constexpr std::string_view allowedMarks = "!$&'()*+,-./:;=?@_~";
constexpr std::string_view digits = "0123456789ABCDEF";

bool isAllowed(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         allowedMarks.find(c) != std::string_view::npos;
}

bool isUTF8(std::string_view text) {
  while (!text.empty()) {
    if (!platform::takeCharacter(text)) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string> addingPercentEncodingForQuery(std::string_view text) {
  if (!isUTF8(text)) return std::nullopt;
  std::string encoded;
  encoded.reserve(text.size());
  for (const char c : text) {
    if (isAllowed(c)) {
      encoded += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded += '%';
    encoded += digits[byte >> 4];
    encoded += digits[byte & 0xf];
  }
  return encoded;
}

}  // namespace velkin
