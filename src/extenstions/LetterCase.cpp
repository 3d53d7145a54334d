#include "extenstions/LetterCase.h"

#include <algorithm>

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace velkin {

namespace {

icu::UnicodeString fromUTF8(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string toUTF8(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Changes the letters from `first` to `last`. Most texts are ASCII, the characters of keys among them, and
/// the way through the library's own strings takes ten times as long.
std::string withOtherCase(std::string_view text, char first, char last) {
  std::string result(text);
  for (auto& c : result) {
    if (c >= first && c <= last) c = static_cast<char>(c ^ 0x20);
  }
  return result;
}

}  // namespace

std::string uppercased(std::string_view text) {
  if (isASCII(text)) return withOtherCase(text, 'a', 'z');
  return toUTF8(fromUTF8(text).toUpper(icu::Locale::getRoot()));
}

std::string lowercased(std::string_view text) {
  if (isASCII(text)) return withOtherCase(text, 'A', 'Z');
  return toUTF8(fromUTF8(text).toLower(icu::Locale::getRoot()));
}

}  // namespace velkin
