#pragma once

#include "MarkdownEngine/InlineSearches.h"
#include "MarkdownEngine/Modifier.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace markdown {

/// A link, as positions in the input; its text is the content between the components that start and end it.
/// An image is a link with a "!" in front.
struct Link {
  static constexpr Modifier::Target modifierTarget = Modifier::Target::links;

  /// What stands behind the link's text: "(url)", with balanced parentheses, or "[name]" of a declared
  /// address.
  struct Target {
    /// `closingBracket` is the position of the "]" that ends the link's text.
    [[nodiscard]] static std::optional<Target> readAt(std::string_view text, std::size_t closingBracket,
                                                      InlineSearches& searches);

    /// Behind the whole link.
    [[nodiscard]] std::size_t linkEnd() const noexcept { return end + 1; }

    std::size_t begin = 0;
    std::size_t end : 63 = 0;
    std::size_t isReference : 1 = 0;
  };

  /// Where the "[" stands, or the "!" of an image.
  std::size_t begin = 0;
  Target target;
};

}  // namespace markdown
