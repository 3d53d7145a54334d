#include "Platform/Gtk/GtkInputSource.h"

#include "Platform/Gtk/GtkKeyCodes.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <span>

#include <gtk/gtk.h>

namespace platform {

namespace {

constexpr std::uint32_t keyOfLetterA = 0x00;

struct Symbol {
  int layout;
  int level;
  guint keyval;
};

/// Everything that the key gives, in all layouts and with all modifiers.
std::vector<Symbol> symbolsOf(unsigned keycode) {
  GdkKeymapKey* keys = nullptr;
  guint* keyvals = nullptr;
  int count = 0;
  std::vector<Symbol> symbols;
  if (gdk_display_map_keycode(gdk_display_get_default(), keycode, &keys, &keyvals, &count)) {
    for (int i = 0; i < count; ++i) symbols.push_back({keys[i].group, keys[i].level, keyvals[i]});
  }
  g_free(keys);
  g_free(keyvals);
  return symbols;
}

char32_t characterOf(unsigned keycode, int layout) {
  guint keyval = 0;
  gdk_display_translate_key(gdk_display_get_default(), keycode, GdkModifierType(0), layout, &keyval, nullptr,
                            nullptr, nullptr);
  const char32_t character = gdk_keyval_to_unicode(keyval);
  constexpr char32_t firstPrintable = 0x20;
  constexpr char32_t deleteCharacter = 0x7F;
  if (character >= firstPrintable && character != deleteCharacter) return character;
  // The keypad gives its digits with Num Lock only.
  for (const auto& symbol : symbolsOf(keycode)) {
    const bool isOfKeypad = symbol.keyval >= GDK_KEY_KP_Multiply && symbol.keyval <= GDK_KEY_KP_9;
    if (isOfKeypad) return gdk_keyval_to_unicode(symbol.keyval);
  }
  return 0;
}

bool writesASCII(int layout) {
  const auto keycode = hardwareKeycode(keyOfLetterA);
  const auto character = keycode ? characterOf(*keycode, layout) : 0;
  return character > 0 && character < 0x80;
}

}  // namespace

std::unique_ptr<TISInputSource> GtkInputSource::current() {
  const int active = WindowSystem::present().keyboardGroup();
  if (writesASCII(active)) return std::make_unique<GtkInputSource>(active);
  int last = 0;
  for (const auto& symbol : symbolsOf(hardwareKeycode(keyOfLetterA).value_or(0)))
    last = std::max(last, symbol.layout);
  for (int layout = 0; layout <= last; ++layout) {
    if (writesASCII(layout)) return std::make_unique<GtkInputSource>(layout);
  }
  return nullptr;
}

tl::expected<std::string, OSStatus> GtkInputSource::UCKeyTranslate(std::uint16_t keyCode) const {
  std::string text;
  const auto keycode = placeOf(keyCode, charactersOf(gdk_display_get_default(), layout_));
  const auto character = keycode ? characterOf(*keycode, layout_) : 0;
  if (character != 0) appendUTF8(text, character);
  return text;
}

}  // namespace platform
