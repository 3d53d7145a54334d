#include "unit/MarkdownEngine/reference/Characters.h"

#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace markdown::reference {

bool Character::isNewline() const {
  return (first >= 0x0A && first <= 0x0D) || first == 0x85 || first == 0x2028 || first == 0x2029;
}

bool Character::isWhitespace() const {
  return u_hasBinaryProperty(static_cast<UChar32>(first), UCHAR_WHITE_SPACE) != 0;
}

bool Character::isNumber() const {
  return u_getIntPropertyValue(static_cast<UChar32>(first), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

std::vector<Character> charactersOf(std::string_view text) {
  const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  iterator->setText(unicode);
  std::vector<Character> characters;
  int32_t start = iterator->first();
  for (int32_t end = iterator->next(); end != icu::BreakIterator::DONE; start = end, end = iterator->next()) {
    Character character;
    character.first = static_cast<char32_t>(unicode.char32At(start));
    unicode.tempSubStringBetween(start, end).toUTF8String(character.bytes);
    characters.push_back(std::move(character));
  }
  return characters;
}

std::string lowercased(std::string_view text) {
  std::string result;
  icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())})
      .toLower(icu::Locale::getRoot())
      .toUTF8String(result);
  return result;
}

}  // namespace markdown::reference
