#include "Keyboard/QKKeyboardShortcuts.h"

#include "Keyboard/Name.h"

namespace velkin {

namespace {

using enum QKKeyboardShortcutCategory;

struct Row {
  std::string_view label;
  std::string_view keyEquivalent;
  QKKeyboardShortcutCategory category;
};

constexpr std::array<Row, qkKeyboardShortcutCount> rows = {{
    {"PopUp", "", global},
    {"SearchBar", "", global},
    {"About Velkin", "", misc},
    {"Appearance...", "A", misc},
    {"Open In Browser", "o", misc},
    {"Toggle Menu", ",", misc},
    {"Preview", "", misc},
    {"Shortcuts", "", misc},
    {"Show Toolbar", "⌥t", misc},
    {"Use Experimental Scripting", "", misc},
    {"Start at Login", "", misc},
    {"Make Menu Sticky", "S", misc},
    {"Quit", "q", misc},
    {"Find", "f", view},
    {"Actual Size", "0", view},
    {"Zoom In", "+", view},
    {"Zoom Out", "-", view},
    {"Back", "[", navigation},
    {"Forward", "]", navigation},
    {"Reload", "r", navigation},
    {"Reload From Origin", "⌥r", navigation},
    {"Taller", "↓", window},
    {"Shorter", "↑", window},
    {"Slimmer", "→", window},
    {"Wider", "←", window},
    {"Toggle Full Screen", "f", window},
    {"Scroll Up", "pgup", scroll},
    {"Scroll Down", "pgdn", scroll},
    {"Bard", "D", sideBar},
    {"BitBucket", "b", sideBar},
    {"ChatGPT", "t", sideBar},
    {"GitLab", "g", sideBar},
    {"Hemingway", "h", sideBar},
    {"Jira", "j", sideBar},
}};

constexpr std::array<std::string_view, allQKKeyboardShortcutCategories.size()> categoryNames = {
    "Global", "Misc", "Scroll", "SideBar", "View", "Navigation", "Window"};

constexpr std::string_view optionGlyph = "⌥";

const Row& row(QKKeyboardShortcuts shortcut) { return rows[static_cast<std::size_t>(shortcut)]; }

std::string descriptionOf(const KeyboardShortcuts::Name& name) {
  const auto shortcut = name.shortcut();
  return shortcut ? shortcut->description() : std::string();
}

bool isCapitalizedAlpha(std::string_view text) {
  return text.size() == 1 && text[0] >= 'A' && text[0] <= 'Z';
}

}  // namespace

std::string_view rawValue(QKKeyboardShortcutCategory category) noexcept {
  return categoryNames[static_cast<std::size_t>(category)];
}

std::string_view rawValue(QKKeyboardShortcuts shortcut) noexcept { return row(shortcut).label; }

std::string keyEquivalent(QKKeyboardShortcuts shortcut) {
  using KeyboardShortcuts::Name;
  switch (shortcut) {
    case QKKeyboardShortcuts::keyboardShortcut:
      return descriptionOf(Name::popUpShortcut());
    case QKKeyboardShortcuts::searchBarShortcut:
      return descriptionOf(Name::searchBarShortcut());
    default:
      return std::string(row(shortcut).keyEquivalent);
  }
}

QKKeyboardShortcutCategory category(QKKeyboardShortcuts shortcut) noexcept { return row(shortcut).category; }

std::string getDisplayString(std::string_view text, QKKeyboardShortcutCategory category) {
  const auto behind = [&](std::string_view glyphs) { return std::string(glyphs).append(text); };
  if (category == global || text.empty()) return std::string(text);
  if (category == window || category == sideBar) return behind(isCapitalizedAlpha(text) ? "⇧⌃⌘" : "⌃⌘");
  if (isCapitalizedAlpha(text)) return behind("⇧⌘");
  if (category == scroll) return std::string(text);
  if (const auto place = text.find(optionGlyph); place != std::string_view::npos) {
    std::string rest(text);
    rest.erase(place, optionGlyph.size());
    return "⌥⌘" + rest;
  }
  return behind("⌘");
}

}  // namespace velkin
