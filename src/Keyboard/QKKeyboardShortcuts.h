#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace velkin {

enum class QKKeyboardShortcutCategory { global, misc, scroll, sideBar, view, navigation, window };

inline constexpr std::array allQKKeyboardShortcutCategories = {
    QKKeyboardShortcutCategory::global, QKKeyboardShortcutCategory::misc,
    QKKeyboardShortcutCategory::scroll, QKKeyboardShortcutCategory::sideBar,
    QKKeyboardShortcutCategory::view,   QKKeyboardShortcutCategory::navigation,
    QKKeyboardShortcutCategory::window};

/// The program's commands as they are told to the user: in the menu and in the reference of shortcuts. The
/// keys themselves are decided by the router, which doesn't read this table; the two differ where users know
/// it so.
enum class QKKeyboardShortcuts {
  keyboardShortcut,
  searchBarShortcut,
  about,
  appearance,
  openBrowser,
  preferencesMenu,
  previewMenu,
  shortcuts,
  toolbar,
  experimentalEnabled,
  startAtLogin,
  stickyMenu,
  quit,
  find,
  actualSize,
  zoomIn,
  zoomOut,
  back,
  forward,
  reload,
  reloadOrigin,
  windowTaller,
  windowShorter,
  windowSlimmer,
  windowWider,
  windowFullScreen,
  scrollUp,
  scrollDn,
  sideBard,
  sideBitBucket,
  sideChatGPT,
  sideGitLab,
  sideHemingway,
  sideJira,
};

inline constexpr std::size_t qkKeyboardShortcutCount =
    static_cast<std::size_t>(QKKeyboardShortcuts::sideJira) + 1;

std::string_view rawValue(QKKeyboardShortcutCategory category) noexcept;
/// The command's label.
std::string_view rawValue(QKKeyboardShortcuts shortcut) noexcept;
/// Empty for a command without a key. Those of the global ones are what the user has stored, with glyphs.
/// Main thread.
std::string keyEquivalent(QKKeyboardShortcuts shortcut);
QKKeyboardShortcutCategory category(QKKeyboardShortcuts shortcut) noexcept;

/// A key equivalent with the glyphs of its modifiers, which for most categories go without saying.
std::string getDisplayString(std::string_view text, QKKeyboardShortcutCategory category);

}  // namespace velkin
