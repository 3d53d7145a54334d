#include "Keyboard/ShortcutLegend.h"

#include "extenstions/LetterCase.h"

#include <array>

namespace velkin {

namespace {

struct Glyph {
  std::string_view glyph;
  std::string_view name;
};

/// In the order in which this keyboard's users say them.
constexpr std::array glyphs = {Glyph{"⌘", "Ctrl+"}, Glyph{"⌥", "Alt+"}, Glyph{"⌃", "Super+"},
                               Glyph{"⇧", "Shift+"}};

constexpr std::array keys = {
    Glyph{"↩", "Return"},  Glyph{"⌫", "Backspace"}, Glyph{"⌦", "Delete"}, Glyph{"↘", "End"},
    Glyph{"⎋", "Escape"},  Glyph{"↖", "Home"},      Glyph{"⎵", "Space"},  Glyph{"⇥", "Tab"},
    Glyph{"⇞", "Page Up"}, Glyph{"⇟", "Page Down"}, Glyph{"↑", "Up"},     Glyph{"→", "Right"},
    Glyph{"↓", "Down"},    Glyph{"←", "Left"},      Glyph{"pgup", "Page Up"}, Glyph{"pgdn", "Page Down"}};

}  // namespace

std::string spelledOut(std::string_view text) {
  std::string rest(text);
  std::string spelled;
  for (const auto& [glyph, name] : glyphs) {
    const auto place = rest.find(glyph);
    if (place == std::string::npos) continue;
    rest.erase(place, glyph.size());
    spelled += name;
  }
  for (const auto& [glyph, name] : keys) {
    if (rest == glyph) return spelled.append(name);
  }
  return spelled + uppercased(rest);
}

}  // namespace velkin
