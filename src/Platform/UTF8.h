#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Takes one character off the front of `text`. Nothing if the bytes there aren't well-formed UTF-8 (a lone
/// or missing continuation byte, an overlong form, a surrogate, a value beyond U+10FFFF): then exactly the
/// bytes that one U+FFFD stands for are taken off. `text` must not be empty.
std::optional<char32_t> takeCharacter(std::string_view& text) noexcept;

/// Appends the UTF-8 form of `character`.
void appendUTF8(std::string& text, char32_t character);

inline constexpr char32_t replacementCharacter = 0xFFFD;

/// The text for a reader that takes a NUL character for the end: U+FFFD stands in the place of each.
std::string withoutNulCharacters(std::string text);

/// The text without what a reader of UTF-8 would stumble over: U+FFFD stands in the place of each malformed
/// part and of each NUL character.
std::string wellFormed(std::string_view text);

}  // namespace platform
