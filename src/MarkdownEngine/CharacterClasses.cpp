#include "MarkdownEngine/CharacterClasses.h"

#include <unicode/uchar.h>

namespace markdown {

bool isNumber(char32_t scalar) noexcept {
  if (scalar < 0x80) return scalar >= '0' && scalar <= '9';
  return u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_NUMERIC_TYPE) != U_NT_NONE;
}

}  // namespace markdown
