#pragma once

#include <string>
#include <string_view>

namespace velkin {

/// Which keys the glyphs of the shortcuts stand for on this keyboard. Shown wherever shortcuts are.
inline constexpr std::string_view shortcutLegend = "⌘ Ctrl   ⌥ Alt   ⌃ Super   ⇧ Shift";

/// A tooltip that names a shortcut, with the legend below it.
inline std::string withShortcutLegend(std::string_view tooltip) {
  return std::string(tooltip).append("\n").append(shortcutLegend);
}

/// A shortcut in glyphs, with its modifiers by the names of this keyboard's keys: "⇧⌘T" becomes "Ctrl+Shift+T".
std::string spelledOut(std::string_view glyphs);

}  // namespace velkin
