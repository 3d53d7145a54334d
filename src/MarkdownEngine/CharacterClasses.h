#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace markdown {

/// The Unicode classes that the engine asks for. A character of several scalars has the class of its first
/// one.
[[nodiscard]] constexpr bool isNewline(char32_t scalar) noexcept {
  return (scalar >= 0x0A && scalar <= 0x0D) || scalar == 0x85 || scalar == 0x2028 || scalar == 0x2029;
}

/// The property White_Space, newlines included.
[[nodiscard]] constexpr bool isWhitespace(char32_t scalar) noexcept {
  return scalar == 0x20 || (scalar >= 0x09 && scalar <= 0x0D) || scalar == 0x85 || scalar == 0xA0 ||
         scalar == 0x1680 || (scalar >= 0x2000 && scalar <= 0x200A) || scalar == 0x2028 || scalar == 0x2029 ||
         scalar == 0x202F || scalar == 0x205F || scalar == 0x3000;
}

[[nodiscard]] constexpr bool isSameLineWhitespace(char32_t scalar) noexcept {
  return isWhitespace(scalar) && !isNewline(scalar);
}

/// Whether the scalar has a numeric value: digits of every script, fractions, Roman numerals, some
/// ideographs.
[[nodiscard]] bool isNumber(char32_t scalar) noexcept;

[[nodiscard]] constexpr bool isAscii(char byte) noexcept { return static_cast<unsigned char>(byte) < 0x80; }

/// A set of bytes, for loops that run over a text until a byte matters.
class ByteSet {
 public:
  constexpr explicit ByteSet(std::string_view members) {
    for (const char member : members) isMember_[static_cast<unsigned char>(member)] = true;
  }
  [[nodiscard]] constexpr bool contains(char byte) const noexcept {
    return isMember_[static_cast<unsigned char>(byte)];
  }
  /// The first position from `from` up to `end` with a byte of the set, or `end`.
  [[nodiscard]] std::size_t find(const char* data, std::size_t from, std::size_t end) const noexcept {
    while (from < end && !contains(data[from])) ++from;
    return from;
  }

 private:
  std::array<bool, 256> isMember_{};
};

/// The first bytes that a white-space scalar beyond ASCII can have, beside all of ASCII's.
inline constexpr std::string_view whitespaceBytes = "\t\n\v\f\r \xC2\xE1\xE2\xE3";
/// The first bytes that a newline can have.
inline constexpr std::string_view newlineBytes = "\n\v\f\r\xC2\xE2";

}  // namespace markdown
