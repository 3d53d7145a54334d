#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <gdk/gdk.h>

namespace platform {

/// The virtual key code of a place on the keyboard, told by X's code of it.
std::optional<std::uint16_t> virtualKeyCode(unsigned hardwareKeycode);
/// The other way round.
std::optional<unsigned> hardwareKeycode(std::uint32_t virtualKeyCode);

/// What the key at a place gives without modifiers in the layout in question; 0 for nothing.
using CharacterAt = std::function<char32_t(unsigned hardwareKeycode)>;

/// The virtual key code of a key by what is printed on it: a letter, digit or mark that a US keyboard gives
/// without Shift has that key's code wherever it is, and "+" the code of "=". The digit row's places 1 to 4
/// and 0, and all other keys, have the codes of their places.
std::optional<std::uint16_t> keyCodeOf(unsigned hardwareKeycode, const CharacterAt& characterAt);
/// The place of the key that has this code in the layout; where none has, the code's own place.
std::optional<unsigned> placeOf(std::uint32_t keyCode, const CharacterAt& characterAt);

/// Of a layout of this display, counted from 0.
CharacterAt charactersOf(GdkDisplay* display, int layout);
/// `layout` itself if it has Latin letters, else the first layout that has; `layout` again if none has.
int latinLayout(GdkDisplay* display, int layout);

}  // namespace platform
