#pragma once

#include "Platform/Geometry.h"

#include <cstdint>
#include <string>

namespace platform {

/// Something that the user did.
struct NSEvent {
  enum class EventType : int {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12
  };

  /// One bit for each type, as `sendActionOn` takes them.
  static constexpr std::uint64_t mask(EventType type) { return std::uint64_t{1} << static_cast<int>(type); }

  EventType type = EventType::leftMouseUp;
  /// Where the pointer was, in screen coordinates.
  NSPoint locationOnScreen;
};

}  // namespace platform
