#pragma once

#include <array>
#include <concepts>
#include <string_view>

namespace velkin {

/// The steps of the pages' zoom, from the largest.
enum class AppearanceFontSize { largest, larger, normal, smaller, smallest };

inline constexpr std::array allAppearanceFontSizes = {AppearanceFontSize::largest, AppearanceFontSize::larger,
                                                      AppearanceFontSize::normal, AppearanceFontSize::smaller,
                                                      AppearanceFontSize::smallest};

namespace appearanceFontSize {

struct Row {
  double rawValue;
  /// A step of earlier versions, which may still be stored.
  double earlier;
  /// The steps between have no name of their own: the row reads from "Larger" to "Smaller".
  std::string_view label;
};
inline constexpr std::array<Row, 5> rows = {{{1.45, 1.3, "Larger"},
                                             {1.2, 1.15, " -- "},
                                             {1.0, 1.0, "Default"},
                                             {0.8, 0.85, " -- "},
                                             {0.55, 0.6, "Smaller"}}};

}  // namespace appearanceFontSize

/// The factor of the page zoom.
constexpr double rawValue(AppearanceFontSize size) noexcept {
  return appearanceFontSize::rows[static_cast<std::size_t>(size)].rawValue;
}

constexpr std::string_view stringValue(AppearanceFontSize size) noexcept {
  return appearanceFontSize::rows[static_cast<std::size_t>(size)].label;
}

/// `fromRawValue<AppearanceFontSize>(zoom)`: the step of that zoom, or of an earlier version's; `normal` for
/// every other number.
template <std::same_as<AppearanceFontSize> Size>
constexpr Size fromRawValue(double zoom) noexcept {
  for (const auto size : allAppearanceFontSizes) {
    const auto& row = appearanceFontSize::rows[static_cast<std::size_t>(size)];
    if (row.rawValue == zoom || row.earlier == zoom) return size;
  }
  return AppearanceFontSize::normal;
}

}  // namespace velkin
