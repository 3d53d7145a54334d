#pragma once

#include "MarkdownEngine/Reader.h"
#include "MarkdownEngine/TextStyle.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace markdown {

struct Content;

/// One opening or closing tag of a style. It prints as a tag while it is valid and as the characters that it
/// was read from otherwise. The parser corrects a marker after it was placed: its kind, its style, and
/// whether one of its two characters is printed beside the tag.
struct TextStyleMarker {
  enum class Kind : std::uint8_t { opening, closing };
  /// Which of two characters is left over from the tag.
  enum class LeftOver : std::uint8_t { none, prefix, suffix };

  TextStyle style = TextStyle::italic;
  Kind kind = Kind::opening;
  LeftOver leftOver = LeftOver::none;
  bool isValid = true;
  /// How many characters the marker was read from.
  std::uint8_t length = 1;

  /// Two of "*" and "_" in any mixture are bold, one is italic, two of "~" are strikethrough.
  [[nodiscard]] static std::optional<TextStyleMarker> read(Reader& reader, Content& content) noexcept;
};

}  // namespace markdown
