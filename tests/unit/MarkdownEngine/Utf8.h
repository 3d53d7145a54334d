#pragma once

#include <string>

namespace markdown::tests {

[[nodiscard]] constexpr bool isSurrogate(char32_t scalar) noexcept {
  return scalar >= 0xD800 && scalar < 0xE000;
}

/// The scalar in UTF-8.
[[nodiscard]] inline std::string utf8(char32_t scalar) {
  std::string text;
  const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (scalar < 0x80) {
    append(scalar);
  } else if (scalar < 0x800) {
    append(0xC0 | scalar >> 6);
    append(0x80 | (scalar & 0x3F));
  } else if (scalar < 0x10000) {
    append(0xE0 | scalar >> 12);
    append(0x80 | (scalar >> 6 & 0x3F));
    append(0x80 | (scalar & 0x3F));
  } else {
    append(0xF0 | scalar >> 18);
    append(0x80 | (scalar >> 12 & 0x3F));
    append(0x80 | (scalar >> 6 & 0x3F));
    append(0x80 | (scalar & 0x3F));
  }
  return text;
}

}  // namespace markdown::tests
