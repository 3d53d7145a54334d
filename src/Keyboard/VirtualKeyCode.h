#pragma once

#include <cstdint>

/// The virtual key codes that the router knows: positions of keys, named by what a US keyboard has there.
namespace velkin::key {

using Code = std::uint16_t;

inline constexpr Code a = 0x00, s = 0x01, d = 0x02, f = 0x03, h = 0x04, g = 0x05, b = 0x0B, q = 0x0C,
                      r = 0x0F, t = 0x11, o = 0x1F, p = 0x23, j = 0x26, m = 0x2E;
inline constexpr Code one = 0x12, two = 0x13, three = 0x14, four = 0x15, zero = 0x1D;
inline constexpr Code equal = 0x18, minus = 0x1B, rightBracket = 0x1E, leftBracket = 0x21, comma = 0x2B;
inline constexpr Code returnKey = 0x24, keypadEnter = 0x4C, escape = 0x35, deleteKey = 0x33,
                      forwardDelete = 0x75;
inline constexpr Code pageUp = 0x74, pageDown = 0x79, left = 0x7B, right = 0x7C, down = 0x7D, up = 0x7E;
inline constexpr Code rightCommand = 0x36, command = 0x37, shift = 0x38, option = 0x3A, control = 0x3B,
                      rightShift = 0x3C, rightOption = 0x3D, rightControl = 0x3E;

}  // namespace velkin::key
