#pragma once

#include <algorithm>
#include <array>

namespace velkin::KeyboardShortcuts {

/// A key, by its position: a virtual key code, named by what a US keyboard has there.
struct Key {
  int rawValue;
  bool operator==(const Key&) const = default;

  static const Key a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x, y, z;
  static const Key zero, one, two, three, four, five, six, seven, eight, nine;
  static const Key capsLock, shift, function, control, option, command, rightCommand, rightOption,
      rightControl, rightShift;
  // `return` and `delete` are taken by the language.
  static const Key returnKey, backslash, backtick, comma, equal, minus, period, quote, semicolon, slash,
      space, tab, leftBracket, rightBracket;
  static const Key pageUp, pageDown, home, end, upArrow, rightArrow, downArrow, leftArrow, escape, deleteKey,
      deleteForward, help, mute, volumeUp, volumeDown;
  static const Key f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18, f19, f20;
  static const Key keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9,
      keypadClear, keypadDecimal, keypadDivide, keypadEnter, keypadEquals, keypadMinus, keypadMultiply,
      keypadPlus;

  /// F1 to F20, in this order.
  static const std::array<Key, 20> functionKeys;
  constexpr bool isFunctionKey() const noexcept;
};

// The published numbers.
inline constexpr Key Key::a{0x00}, Key::s{0x01}, Key::d{0x02}, Key::f{0x03}, Key::h{0x04}, Key::g{0x05},
    Key::z{0x06}, Key::x{0x07}, Key::c{0x08}, Key::v{0x09}, Key::b{0x0B}, Key::q{0x0C}, Key::w{0x0D},
    Key::e{0x0E}, Key::r{0x0F}, Key::y{0x10}, Key::t{0x11}, Key::o{0x1F}, Key::u{0x20}, Key::i{0x22},
    Key::p{0x23}, Key::l{0x25}, Key::j{0x26}, Key::k{0x28}, Key::n{0x2D}, Key::m{0x2E};
inline constexpr Key Key::one{0x12}, Key::two{0x13}, Key::three{0x14}, Key::four{0x15}, Key::six{0x16},
    Key::five{0x17}, Key::nine{0x19}, Key::seven{0x1A}, Key::eight{0x1C}, Key::zero{0x1D};
inline constexpr Key Key::rightCommand{0x36}, Key::command{0x37}, Key::shift{0x38}, Key::capsLock{0x39},
    Key::option{0x3A}, Key::control{0x3B}, Key::rightShift{0x3C}, Key::rightOption{0x3D},
    Key::rightControl{0x3E}, Key::function{0x3F};
inline constexpr Key Key::equal{0x18}, Key::minus{0x1B}, Key::rightBracket{0x1E}, Key::leftBracket{0x21},
    Key::returnKey{0x24}, Key::quote{0x27}, Key::semicolon{0x29}, Key::backslash{0x2A}, Key::comma{0x2B},
    Key::slash{0x2C}, Key::period{0x2F}, Key::tab{0x30}, Key::space{0x31}, Key::backtick{0x32};
inline constexpr Key Key::deleteKey{0x33}, Key::escape{0x35}, Key::volumeUp{0x48}, Key::volumeDown{0x49},
    Key::mute{0x4A}, Key::help{0x72}, Key::home{0x73}, Key::pageUp{0x74}, Key::deleteForward{0x75},
    Key::end{0x77}, Key::pageDown{0x79}, Key::leftArrow{0x7B}, Key::rightArrow{0x7C}, Key::downArrow{0x7D},
    Key::upArrow{0x7E};
inline constexpr Key Key::f17{0x40}, Key::f18{0x4F}, Key::f19{0x50}, Key::f20{0x5A}, Key::f5{0x60},
    Key::f6{0x61}, Key::f7{0x62}, Key::f3{0x63}, Key::f8{0x64}, Key::f9{0x65}, Key::f11{0x67}, Key::f13{0x69},
    Key::f16{0x6A}, Key::f14{0x6B}, Key::f10{0x6D}, Key::f12{0x6F}, Key::f15{0x71}, Key::f4{0x76},
    Key::f2{0x78}, Key::f1{0x7A};
inline constexpr Key Key::keypadDecimal{0x41}, Key::keypadMultiply{0x43}, Key::keypadPlus{0x45},
    Key::keypadClear{0x47}, Key::keypadDivide{0x4B}, Key::keypadEnter{0x4C}, Key::keypadMinus{0x4E},
    Key::keypadEquals{0x51}, Key::keypad0{0x52}, Key::keypad1{0x53}, Key::keypad2{0x54}, Key::keypad3{0x55},
    Key::keypad4{0x56}, Key::keypad5{0x57}, Key::keypad6{0x58}, Key::keypad7{0x59}, Key::keypad8{0x5B},
    Key::keypad9{0x5C};

inline constexpr std::array<Key, 20> Key::functionKeys = {f1,  f2,  f3,  f4,  f5,  f6,  f7,  f8,  f9,  f10,
                                                          f11, f12, f13, f14, f15, f16, f17, f18, f19, f20};

constexpr bool Key::isFunctionKey() const noexcept {
  return std::find(functionKeys.begin(), functionKeys.end(), *this) != functionKeys.end();
}

}  // namespace velkin::KeyboardShortcuts
