#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace markdown::reference {

/// One user-perceived character, as the Unicode library cuts the text. Compared by its bytes, classified by
/// its first scalar.
struct Character {
  std::string bytes;
  char32_t first = 0;

  bool operator==(const Character& other) const { return bytes == other.bytes; }
  bool is(std::string_view text) const { return bytes == text; }
  bool isAny(std::string_view asciiSet) const {
    return bytes.size() == 1 && asciiSet.find(bytes[0]) != std::string_view::npos;
  }
  bool isNewline() const;
  bool isWhitespace() const;
  bool isSameLineWhitespace() const { return isWhitespace() && !isNewline(); }
  bool isNumber() const;
};

/// The characters of a text in valid UTF-8.
std::vector<Character> charactersOf(std::string_view text);

/// The full lower-case mapping.
std::string lowercased(std::string_view text);

}  // namespace markdown::reference
