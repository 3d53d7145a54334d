#pragma once

#include <cstdint>
#include <optional>

namespace platform {

/// The virtual key code of the key at a hardware position (as X11 counts: evdev's number and 8); nothing for
/// a key that the seam has no code for.
std::optional<std::uint16_t> virtualKeyCode(unsigned hardwareKeycode);

/// The other way round; nothing for a virtual key code that no key here has.
std::optional<unsigned> hardwareKeycode(std::uint32_t virtualKeyCode);

}  // namespace platform
