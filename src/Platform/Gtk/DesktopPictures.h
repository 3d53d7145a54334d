#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// Where each desktop keeps the picture behind its windows.

/// Whose picture is asked for.
struct DesktopMonitor {
  /// As the connection is called, "DP-1".
  std::string connector;
  /// From 0, the main one first.
  int number = 0;
  bool isDark = false;
};

/// An absolute path; nothing where the desktop of this session is none that is known, or has no picture.
std::optional<std::string> desktopPicture(const DesktopMonitor& monitor);

/// Out of the channel "xfce4-desktop" in its file's form.
std::optional<std::string> xfceDesktopPicture(std::string_view channel, const DesktopMonitor& monitor);
/// Out of Plasma's file of its desktops; it may be the folder of a package of pictures.
std::optional<std::string> plasmaDesktopPicture(std::string_view applets, const DesktopMonitor& monitor);
/// The picture of such a package that a small copy is made of best.
std::optional<std::string> pictureOfPackage(const std::string& folder, bool isDark);
/// The first picture of a slide show as GNOME describes one.
std::optional<std::string> firstSlide(std::string_view slideShow);

}  // namespace platform
