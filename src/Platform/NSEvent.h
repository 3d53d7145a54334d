#pragma once

#include "Platform/Connection.h"
#include "Platform/Geometry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

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

  /// The bits of `modifierFlags`. Each names what the desktop has in its place.
  static constexpr std::uint32_t capsLockFlag = 0x10000;
  static constexpr std::uint32_t shiftFlag = 0x20000;
  static constexpr std::uint32_t controlFlag = 0x40000;
  static constexpr std::uint32_t optionFlag = 0x80000;
  static constexpr std::uint32_t commandFlag = 0x100000;
  static constexpr std::uint32_t numericPadFlag = 0x200000;
  static constexpr std::uint32_t functionFlag = 0x800000;
  static constexpr std::uint32_t deviceIndependentFlagsMask = 0xFFFF0000;

  /// A key that gives no character of a text, by the private character that stands for it.
  struct SpecialKey {
    char32_t rawValue;
    bool operator==(const SpecialKey&) const = default;

    /// F1 to F35.
    static constexpr char32_t firstFunctionKey = 0xF704;
    static constexpr int functionKeyCount = 35;
    static const std::array<SpecialKey, functionKeyCount> functionKeys;
    bool isFunctionKey() const noexcept;
  };

  /// One bit for each type, as `sendActionOn` and the monitors take them.
  static constexpr std::uint64_t mask(EventType type) { return std::uint64_t{1} << static_cast<int>(type); }

  EventType type = EventType::leftMouseUp;
  /// Of a click on the tray's icon: where the pointer was, in screen coordinates.
  NSPoint locationOnScreen = {};
  /// Of a mouse button in a window of the program: where the pointer was, from the window's bottom left, and
  /// which window it was (see `ViewPlace`). 0 is no window.
  NSPoint locationInWindow = {};
  int windowNumber = 0;
  /// Of a key that no virtual key code stands for.
  static constexpr std::uint16_t unknownKeyCode = 0xFF;
  /// Of a key event: the key's position, as a virtual key code.
  std::uint16_t keyCode = 0;
  std::uint32_t modifierFlags = 0;
  /// Of a key event: what the key gives in the active layout when no modifier is held.
  std::optional<std::string> charactersIgnoringModifiers = std::nullopt;

  /// Gets each event of its kinds before the windows do, and hands on what it returns: the event, or nothing
  /// if it is to go no further. Mouse buttons are only told of: their windows get them in any case, since a
  /// control that saw a press and no release would stay pressed.
  using Monitor = std::function<std::optional<NSEvent>(const NSEvent&)>;

  /// Adds a monitor before those that are there: the newest sees an event first. It ends with the connection,
  /// also in the middle of an event, and also in the monitor's own call. Main thread.
  static Connection addLocalMonitorForEvents(std::uint64_t mask, Monitor handler);
};

inline constexpr std::array<NSEvent::SpecialKey, NSEvent::SpecialKey::functionKeyCount>
    NSEvent::SpecialKey::functionKeys = [] {
      std::array<SpecialKey, functionKeyCount> keys{};
      for (std::size_t i = 0; i < keys.size(); ++i)
        keys[i].rawValue = firstFunctionKey + static_cast<char32_t>(i);
      return keys;
    }();

inline bool NSEvent::SpecialKey::isFunctionKey() const noexcept {
  return std::find(functionKeys.begin(), functionKeys.end(), *this) != functionKeys.end();
}

}  // namespace platform
