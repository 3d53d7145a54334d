#pragma once

#include <array>
#include <concepts>
#include <string_view>

namespace velkin {

/// The steps of the window's height, from the lowest. (`short` is a word of the language.)
enum class AppearanceHeight { shortHeight, medium, tall, giant, full };

inline constexpr std::array allAppearanceHeights = {AppearanceHeight::shortHeight, AppearanceHeight::medium,
                                                    AppearanceHeight::tall, AppearanceHeight::giant,
                                                    AppearanceHeight::full};

namespace appearanceHeight {

struct Row {
  double rawValue;
  std::string_view label;
};
inline constexpr std::array<Row, 5> rows = {
    {{480, "Short"}, {600, "Medium"}, {980, "Tall"}, {1240, "Giant"}, {2160, "Full"}}};

/// A step of earlier versions, which may still be stored.
inline constexpr double earlierTall = 740;

}  // namespace appearanceHeight

/// Points.
constexpr double rawValue(AppearanceHeight height) noexcept {
  return appearanceHeight::rows[static_cast<std::size_t>(height)].rawValue;
}

constexpr std::string_view stringValue(AppearanceHeight height) noexcept {
  return appearanceHeight::rows[static_cast<std::size_t>(height)].label;
}

/// `fromRawValue<AppearanceHeight>(points)`: the step of that height, or of an earlier version's; `medium`
/// for every other number.
template <std::same_as<AppearanceHeight> Height>
constexpr Height fromRawValue(double points) noexcept {
  for (const auto height : allAppearanceHeights) {
    if (rawValue(height) == points) return height;
  }
  return points == appearanceHeight::earlierTall ? AppearanceHeight::tall : AppearanceHeight::medium;
}

/// Points of the window, and of its picture in the Appearance panel.
constexpr double windowSize(AppearanceHeight height) noexcept { return rawValue(height); }
constexpr double previewSize(AppearanceHeight height) noexcept { return rawValue(height) * 0.1; }

}  // namespace velkin
