#pragma once

#include <cstdint>
#include <string_view>

namespace markdown {

enum class TextStyle : std::uint8_t { italic, bold, strikethrough };
inline constexpr int textStyleCount = 3;

[[nodiscard]] constexpr std::string_view htmlTagName(TextStyle style) noexcept {
  constexpr std::string_view names[textStyleCount] = {"em", "strong", "s"};
  return names[static_cast<int>(style)];
}

}  // namespace markdown
