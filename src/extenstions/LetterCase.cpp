#include "extenstions/LetterCase.h"

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

}  // namespace

std::string uppercased(std::string_view text) {
  return toUTF8(fromUTF8(text).toUpper(icu::Locale::getRoot()));
}

std::string lowercased(std::string_view text) {
  return toUTF8(fromUTF8(text).toLower(icu::Locale::getRoot()));
}

}  // namespace velkin
