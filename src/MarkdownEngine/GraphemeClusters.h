#pragma once

#include "MarkdownEngine/CharacterClasses.h"

#include <cstddef>
#include <string_view>

/// Where the user-perceived characters (extended grapheme clusters) of a text in valid UTF-8 begin and end.
/// The text is never cut up beforehand: nearly every boundary that matters stands between two ASCII bytes and
/// is decided by looking at them; the Unicode library is asked for the rest.
namespace markdown::graphemes {

/// The scalar that begins at `index`, and the position behind it.
struct Scalar {
  char32_t value;
  std::size_t end;
};
[[nodiscard]] Scalar scalarAt(std::string_view text, std::size_t index) noexcept;
/// The scalar that ends at `end`, which is above 0; `end` of the result is where it begins.
[[nodiscard]] Scalar scalarBefore(std::string_view text, std::size_t end) noexcept;

/// Whether the scalar beyond ASCII that begins at `index` belongs to the character before it, when that is
/// ASCII and no control.
[[nodiscard]] bool extendsPrevious(std::string_view text, std::size_t index) noexcept;
/// Whether the scalar beyond ASCII that ends at `end` takes what follows, unless that is a control, into its
/// own character.
[[nodiscard]] bool prependsNext(std::string_view text, std::size_t end) noexcept;

/// The end of the character that begins at `start`, a boundary before the end of the text.
[[nodiscard]] std::size_t characterEnd(std::string_view text, std::size_t start) noexcept;
/// The start of the character that ends at `end`, a boundary above 0.
[[nodiscard]] std::size_t characterStart(std::string_view text, std::size_t end) noexcept;

/// Nothing joins a control, but CR and LF each other.
[[nodiscard]] constexpr bool isControl(char character) noexcept {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

/// Whether the ASCII byte at `index`, no control, is a character of its own.
[[nodiscard]] inline bool standsAlone(std::string_view text, std::size_t index) noexcept {
  return (index + 1 == text.size() || isAscii(text[index + 1]) || !extendsPrevious(text, index + 1)) &&
         (index == 0 || isAscii(text[index - 1]) || !prependsNext(text, index));
}

/// Whether the character that begins at `index`, a boundary or the end of the text, is exactly this ASCII
/// one, which isn't CR.
[[nodiscard]] inline bool isCharacter(std::string_view text, std::size_t index, char character) noexcept {
  return index < text.size() && text[index] == character &&
         (index + 1 == text.size() || isAscii(text[index + 1]) || isControl(character) ||
          !extendsPrevious(text, index + 1));
}

/// Whether the character before `index` is a backslash, which keeps what follows from being markup.
[[nodiscard]] inline bool isBehindBackslash(std::string_view text, std::size_t index) noexcept {
  return index > 0 && text[index - 1] == '\\' &&
         (index == 1 || isAscii(text[index - 2]) || !prependsNext(text, index - 1));
}

/// What white space begins at `index`, a boundary before the end of the text.
struct Whitespace {
  enum class Kind { none, sameLine, newline };
  Kind kind = Kind::none;
  /// Behind the character; only told for white space.
  std::size_t end = 0;
};
[[nodiscard]] Whitespace whitespaceBeyondAscii(std::string_view text, std::size_t index) noexcept;
[[nodiscard]] inline Whitespace whitespaceAt(std::string_view text, std::size_t index) noexcept {
  using Kind = Whitespace::Kind;
  const char byte = text[index];
  if (!isAscii(byte)) return whitespaceBeyondAscii(text, index);
  if (byte == ' ') {
    if (index + 1 == text.size() || isAscii(text[index + 1]) || !extendsPrevious(text, index + 1)) {
      return {Kind::sameLine, index + 1};
    }
    return whitespaceBeyondAscii(text, index);
  }
  if (byte == '\t') return {Kind::sameLine, index + 1};
  if (byte == '\r' && index + 1 < text.size() && text[index + 1] == '\n') return {Kind::newline, index + 2};
  if (byte >= '\n' && byte <= '\r') return {Kind::newline, index + 1};
  return {};
}

/// The same for a position of which only this is known: that it is the first byte of a scalar.
[[nodiscard]] Whitespace whitespaceAtScalar(std::string_view text, std::size_t index) noexcept;

}  // namespace markdown::graphemes
