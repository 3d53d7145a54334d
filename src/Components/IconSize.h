#pragma once

#include <array>

namespace velkin {

/// The sizes in which the application's icon is shown.
enum class IconSize { small, medium, large };

/// Points of the edge.
constexpr double rawValue(IconSize size) noexcept {
  constexpr std::array edges = {32.0, 64.0, 128.0};
  return edges[static_cast<std::size_t>(size)];
}

/// Points.
constexpr double cornerRadius(IconSize size) noexcept {
  constexpr std::array radii = {6.0, 12.0, 24.0};
  return radii[static_cast<std::size_t>(size)];
}

}  // namespace velkin
