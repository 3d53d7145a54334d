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

}  // namespace velkin
