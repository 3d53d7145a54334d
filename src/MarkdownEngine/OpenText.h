#pragma once

#include "MarkdownEngine/TextStyle.h"

#include <cstddef>
#include <cstdint>

namespace markdown {

/// The characters at which a text ends, as a set of flags.
enum class Terminators : std::uint8_t { none = 0, lineFeed = 1, closingBracket = 2, pipe = 4, cell = 5 };

[[nodiscard]] constexpr bool contains(Terminators set, Terminators member) noexcept {
  return (static_cast<unsigned>(set) & static_cast<unsigned>(member)) != 0;
}

/// Where the marker of an open style is kept: in a component or, if that was written already, among the
/// placed markers.
struct ActiveMarker {
  std::size_t isPlaced : 1;
  std::size_t index : 63;
};

/// The styles that are open in a text, in the order of their opening. Each is open at most once. Their
/// markers stand on a stack that the texts in one another share.
struct ActiveStyles {
  std::uint8_t count = 0;
  std::uint8_t styles = 0;

  [[nodiscard]] bool contains(TextStyle style) const noexcept { return (styles & bit(style)) != 0; }
  [[nodiscard]] static std::uint8_t bit(TextStyle style) noexcept {
    return static_cast<std::uint8_t>(1U << static_cast<unsigned>(style));
  }
};

/// A text whose reading waits for a link in it.
struct OpenText {
  /// The index of the component that starts the link.
  std::size_t linkStart;
  Terminators terminators;
  ActiveStyles styles;
};
static_assert(sizeof(OpenText) == 16);

}  // namespace markdown
