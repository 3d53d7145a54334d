#pragma once

#include "Platform/Geometry.h"

#include <optional>
#include <vector>

namespace platform {

/// A monitor, in points.
struct NSScreen {
  NSRect frame;
  /// Without the desktop's panels.
  NSRect visibleFrame;

  /// The one with the keyboard's focus; nothing where no monitor is attached.
  static std::optional<NSScreen> main();
  static std::vector<NSScreen> screens();
};

}  // namespace platform
