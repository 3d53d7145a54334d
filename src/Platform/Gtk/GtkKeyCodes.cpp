#include "Platform/Gtk/GtkKeyCodes.h"

#include <algorithm>
#include <array>

#include <linux/input-event-codes.h>

namespace platform {

namespace {

constexpr unsigned evdevOffset = 8;

struct Key {
  unsigned evdev;
  std::uint16_t code;
};

constexpr std::array keys = {
    Key{KEY_A, 0x00},          Key{KEY_S, 0x01},         Key{KEY_D, 0x02},          Key{KEY_F, 0x03},
    Key{KEY_H, 0x04},          Key{KEY_G, 0x05},         Key{KEY_Z, 0x06},          Key{KEY_X, 0x07},
    Key{KEY_C, 0x08},          Key{KEY_V, 0x09},         Key{KEY_102ND, 0x0A},      Key{KEY_B, 0x0B},
    Key{KEY_Q, 0x0C},          Key{KEY_W, 0x0D},         Key{KEY_E, 0x0E},          Key{KEY_R, 0x0F},
    Key{KEY_Y, 0x10},          Key{KEY_T, 0x11},         Key{KEY_1, 0x12},          Key{KEY_2, 0x13},
    Key{KEY_3, 0x14},          Key{KEY_4, 0x15},         Key{KEY_6, 0x16},          Key{KEY_5, 0x17},
    Key{KEY_EQUAL, 0x18},      Key{KEY_9, 0x19},         Key{KEY_7, 0x1A},          Key{KEY_MINUS, 0x1B},
    Key{KEY_8, 0x1C},          Key{KEY_0, 0x1D},         Key{KEY_RIGHTBRACE, 0x1E}, Key{KEY_O, 0x1F},
    Key{KEY_U, 0x20},          Key{KEY_LEFTBRACE, 0x21}, Key{KEY_I, 0x22},          Key{KEY_P, 0x23},
    Key{KEY_ENTER, 0x24},      Key{KEY_L, 0x25},         Key{KEY_J, 0x26},          Key{KEY_APOSTROPHE, 0x27},
    Key{KEY_K, 0x28},          Key{KEY_SEMICOLON, 0x29}, Key{KEY_BACKSLASH, 0x2A},  Key{KEY_COMMA, 0x2B},
    Key{KEY_SLASH, 0x2C},      Key{KEY_N, 0x2D},         Key{KEY_M, 0x2E},          Key{KEY_DOT, 0x2F},
    Key{KEY_TAB, 0x30},        Key{KEY_SPACE, 0x31},     Key{KEY_GRAVE, 0x32},      Key{KEY_BACKSPACE, 0x33},
    Key{KEY_ESC, 0x35},        Key{KEY_RIGHTCTRL, 0x36}, Key{KEY_LEFTCTRL, 0x37},   Key{KEY_LEFTSHIFT, 0x38},
    Key{KEY_CAPSLOCK, 0x39},   Key{KEY_LEFTALT, 0x3A},   Key{KEY_LEFTMETA, 0x3B},   Key{KEY_RIGHTSHIFT, 0x3C},
    Key{KEY_RIGHTALT, 0x3D},   Key{KEY_RIGHTMETA, 0x3E}, Key{KEY_F17, 0x40},        Key{KEY_KPDOT, 0x41},
    Key{KEY_KPASTERISK, 0x43}, Key{KEY_KPPLUS, 0x45},    Key{KEY_NUMLOCK, 0x47},    Key{KEY_KPSLASH, 0x4B},
    Key{KEY_KPENTER, 0x4C},    Key{KEY_KPMINUS, 0x4E},   Key{KEY_F18, 0x4F},        Key{KEY_F19, 0x50},
    Key{KEY_KPEQUAL, 0x51},    Key{KEY_KP0, 0x52},       Key{KEY_KP1, 0x53},        Key{KEY_KP2, 0x54},
    Key{KEY_KP3, 0x55},        Key{KEY_KP4, 0x56},       Key{KEY_KP5, 0x57},        Key{KEY_KP6, 0x58},
    Key{KEY_KP7, 0x59},        Key{KEY_F20, 0x5A},       Key{KEY_KP8, 0x5B},        Key{KEY_KP9, 0x5C},
    Key{KEY_F5, 0x60},         Key{KEY_F6, 0x61},        Key{KEY_F7, 0x62},         Key{KEY_F3, 0x63},
    Key{KEY_F8, 0x64},         Key{KEY_F9, 0x65},        Key{KEY_F11, 0x67},        Key{KEY_F13, 0x69},
    Key{KEY_F16, 0x6A},        Key{KEY_F14, 0x6B},       Key{KEY_F10, 0x6D},        Key{KEY_F12, 0x6F},
    Key{KEY_F15, 0x71},        Key{KEY_INSERT, 0x72},    Key{KEY_HOME, 0x73},       Key{KEY_PAGEUP, 0x74},
    Key{KEY_DELETE, 0x75},     Key{KEY_F4, 0x76},        Key{KEY_END, 0x77},        Key{KEY_F2, 0x78},
    Key{KEY_PAGEDOWN, 0x79},   Key{KEY_F1, 0x7A},        Key{KEY_LEFT, 0x7B},       Key{KEY_RIGHT, 0x7C},
    Key{KEY_DOWN, 0x7D},       Key{KEY_UP, 0x7E},        Key{KEY_VOLUMEUP, 0x48},   Key{KEY_VOLUMEDOWN, 0x49},
    Key{KEY_MUTE, 0x4A},
};

/// The keys that a US keyboard has for characters, each with the one that it gives without Shift.
struct CharacterKey {
  char32_t character;
  std::uint16_t code;
};

constexpr std::array characterKeys = {
    CharacterKey{U'a', 0x00},  CharacterKey{U's', 0x01},  CharacterKey{U'd', 0x02}, CharacterKey{U'f', 0x03},
    CharacterKey{U'h', 0x04},  CharacterKey{U'g', 0x05},  CharacterKey{U'z', 0x06}, CharacterKey{U'x', 0x07},
    CharacterKey{U'c', 0x08},  CharacterKey{U'v', 0x09},  CharacterKey{U'b', 0x0B}, CharacterKey{U'q', 0x0C},
    CharacterKey{U'w', 0x0D},  CharacterKey{U'e', 0x0E},  CharacterKey{U'r', 0x0F}, CharacterKey{U'y', 0x10},
    CharacterKey{U't', 0x11},  CharacterKey{U'1', 0x12},  CharacterKey{U'2', 0x13}, CharacterKey{U'3', 0x14},
    CharacterKey{U'4', 0x15},  CharacterKey{U'6', 0x16},  CharacterKey{U'5', 0x17}, CharacterKey{U'=', 0x18},
    CharacterKey{U'9', 0x19},  CharacterKey{U'7', 0x1A},  CharacterKey{U'-', 0x1B}, CharacterKey{U'8', 0x1C},
    CharacterKey{U'0', 0x1D},  CharacterKey{U']', 0x1E},  CharacterKey{U'o', 0x1F}, CharacterKey{U'u', 0x20},
    CharacterKey{U'[', 0x21},  CharacterKey{U'i', 0x22},  CharacterKey{U'p', 0x23}, CharacterKey{U'l', 0x25},
    CharacterKey{U'j', 0x26},  CharacterKey{U'\'', 0x27}, CharacterKey{U'k', 0x28}, CharacterKey{U';', 0x29},
    CharacterKey{U'\\', 0x2A}, CharacterKey{U',', 0x2B},  CharacterKey{U'/', 0x2C}, CharacterKey{U'n', 0x2D},
    CharacterKey{U'm', 0x2E},  CharacterKey{U'.', 0x2F},  CharacterKey{U'`', 0x32}, CharacterKey{U'+', 0x18},
};

/// The key between Shift and Z that not all keyboards have.
constexpr std::uint16_t extraKey = 0x0A;
constexpr std::array<std::uint16_t, 5> fixedDigits = {0x12, 0x13, 0x14, 0x15, 0x1D};

bool givesCharacters(std::uint16_t code) {
  return code == extraKey || std::any_of(characterKeys.begin(), characterKeys.end(),
                                         [&](const auto& k) { return k.code == code; });
}

bool hasLatinLetters(GdkDisplay* display, int layout) {
  const auto characterAt = charactersOf(display, layout);
  constexpr std::array<unsigned, 4> places = {KEY_A, KEY_F, KEY_J, KEY_K};
  return std::any_of(places.begin(), places.end(), [&](unsigned place) {
    const auto character = characterAt(place + evdevOffset);
    return character >= U'a' && character <= U'z';
  });
}

}  // namespace

std::optional<std::uint16_t> virtualKeyCode(unsigned hardwareKeycode) {
  for (const auto& key : keys) {
    if (key.evdev + evdevOffset == hardwareKeycode) return key.code;
  }
  return std::nullopt;
}

std::optional<unsigned> hardwareKeycode(std::uint32_t virtualKeyCode) {
  for (const auto& key : keys) {
    if (key.code == virtualKeyCode) return key.evdev + evdevOffset;
  }
  return std::nullopt;
}

std::optional<std::uint16_t> keyCodeOf(unsigned hardwareKeycode, const CharacterAt& characterAt) {
  const auto place = virtualKeyCode(hardwareKeycode);
  if (!place || !givesCharacters(*place)) return place;
  if (std::find(fixedDigits.begin(), fixedDigits.end(), *place) != fixedDigits.end()) return place;
  const auto character = characterAt(hardwareKeycode);
  const auto found = std::find_if(characterKeys.begin(), characterKeys.end(),
                                  [&](const auto& known) { return known.character == character; });
  return found == characterKeys.end() ? place : std::optional(found->code);
}

std::optional<unsigned> placeOf(std::uint32_t keyCode, const CharacterAt& characterAt) {
  const auto own = hardwareKeycode(keyCode);
  if (!own || keyCodeOf(*own, characterAt) == keyCode) return own;
  for (const auto& key : keys) {
    if (keyCodeOf(key.evdev + evdevOffset, characterAt) == keyCode) return key.evdev + evdevOffset;
  }
  return own;
}

CharacterAt charactersOf(GdkDisplay* display, int layout) {
  return [display, layout](unsigned keycode) -> char32_t {
    guint keyval = 0;
    if (!gdk_display_translate_key(display, keycode, GdkModifierType(0), layout, &keyval, nullptr, nullptr,
                                   nullptr)) {
      return 0;
    }
    return gdk_keyval_to_unicode(keyval);
  };
}

int latinLayout(GdkDisplay* display, int layout) {
  if (hasLatinLetters(display, layout)) return layout;
  constexpr int mostLayouts = 4;
  for (int other = 0; other < mostLayouts; ++other) {
    if (hasLatinLetters(display, other)) return other;
  }
  return layout;
}

}  // namespace platform
