#pragma once

#include <array>
#include <concepts>
#include <string_view>

namespace velkin {

/// The steps of the window's width, from the narrowest.
enum class AppearanceWidth { slim, medium, wide, broad, full };

inline constexpr std::array allAppearanceWidths = {AppearanceWidth::slim, AppearanceWidth::medium,
                                                   AppearanceWidth::wide, AppearanceWidth::broad,
                                                   AppearanceWidth::full};

namespace appearanceWidth {

struct Row {
  double rawValue;
  std::string_view label;
};
inline constexpr std::array<Row, 5> rows = {
    {{340, "Slim"}, {600, "Medium"}, {980, "Wide"}, {1420, "Broad"}, {3840, "Full"}}};

struct EarlierStep {
  double rawValue;
  AppearanceWidth width;
};
/// Steps of earlier versions, which may still be stored.
inline constexpr std::array<EarlierStep, 4> earlierSteps = {{{460, AppearanceWidth::slim},
                                                             {1600, AppearanceWidth::broad},
                                                             {1860, AppearanceWidth::broad},
                                                             {2200, AppearanceWidth::broad}}};

}  // namespace appearanceWidth

/// Points.
constexpr double rawValue(AppearanceWidth width) noexcept {
  return appearanceWidth::rows[static_cast<std::size_t>(width)].rawValue;
}

constexpr std::string_view stringValue(AppearanceWidth width) noexcept {
  return appearanceWidth::rows[static_cast<std::size_t>(width)].label;
}

/// `fromRawValue<AppearanceWidth>(points)`: the step of that width, or of an earlier version's; `medium` for
/// every other number.
template <std::same_as<AppearanceWidth> Width>
constexpr Width fromRawValue(double points) noexcept {
  for (const auto width : allAppearanceWidths) {
    if (rawValue(width) == points) return width;
  }
  for (const auto& step : appearanceWidth::earlierSteps) {
    if (step.rawValue == points) return step.width;
  }
  return AppearanceWidth::medium;
}

/// Points of the window, of its picture in the Appearance panel, and of the search bar (which has one width).
constexpr double windowSize(AppearanceWidth width) noexcept { return rawValue(width); }
constexpr double previewSize(AppearanceWidth width) noexcept { return rawValue(width) * 0.1; }
constexpr double searchBarSize(AppearanceWidth) noexcept { return rawValue(AppearanceWidth::medium) * 1.2; }

}  // namespace velkin
