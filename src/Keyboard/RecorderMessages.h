#pragma once

#include <string>
#include <string_view>

namespace velkin::KeyboardShortcuts::messages {

inline constexpr std::string_view record_shortcut = "Record Shortcut";
inline constexpr std::string_view press_shortcut = "Press Shortcut";
inline constexpr std::string_view keyboard_shortcut_used_by_system = "This shortcut is used by the system.";
inline constexpr std::string_view keyboard_shortcuts_can_be_changed =
    "You can change the system's shortcuts in its settings.";

inline std::string keyboard_shortcut_used_by_menu_item(std::string_view title) {
  return std::string("This shortcut is used by the menu item “").append(title).append("”.");
}

}  // namespace velkin::KeyboardShortcuts::messages
