#pragma once

#include <cstdint>
#include <string_view>

namespace markdown {

enum class ColumnAlignment : std::uint8_t { none, left, center, right };

/// What the alignment adds to a cell's tag.
[[nodiscard]] constexpr std::string_view attribute(ColumnAlignment alignment) noexcept {
  constexpr std::string_view attributes[] = {"", " align=\"left\"", " align=\"center\"", " align=\"right\""};
  return attributes[static_cast<int>(alignment)];
}

}  // namespace markdown
