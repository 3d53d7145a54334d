#pragma once

#include <optional>
#include <string>

namespace platform {

inline constexpr const char* NSAppearanceNameAqua = "NSAppearanceNameAqua";
inline constexpr const char* NSAppearanceNameDarkAqua = "NSAppearanceNameDarkAqua";
inline constexpr const char* NSAppearanceNameVibrantDark = "NSAppearanceNameVibrantDark";

/// Posted to the distributed notification centre when the user changes between light and dark.
inline constexpr const char* interfaceThemeChangedNotification = "AppleInterfaceThemeChangedNotification";

/// Posted in the same way, once at the most: the desktop has said for the first time what it is like. Not
/// posted where it had been asked and had answered before the launch.
inline constexpr const char* appearanceFirstToldNotification = "VelkinAppearanceFirstToldNotification";

/// The desktop's look.
struct NSAppearance {
  std::string name;

  bool isDark() const { return name == NSAppearanceNameDarkAqua || name == NSAppearanceNameVibrantDark; }

  /// As the desktop has it now. Any thread.
  static std::optional<NSAppearance> currentAppearance();
  /// True if the desktop is dark now; a desktop that hasn't said what it is like isn't. Any thread.
  static bool isDarkNow();
};

}  // namespace platform
