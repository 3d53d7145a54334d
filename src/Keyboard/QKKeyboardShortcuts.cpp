#include "Keyboard/QKKeyboardShortcuts.h"

#include "Keyboard/Name.h"

namespace velkin {

namespace {

using Category = QKKeyboardShortcutCategory;

struct Row {
  std::string_view label;
  std::string_view keyEquivalent;
  Category category;
};

constexpr std::array<Row, qkKeyboardShortcutCount> rows = {{
    {"PopUp", "", Category::global},
    {"SearchBar", "", Category::global},
    {"About Velkin", "", Category::misc},
    {"Appearance...", "A", Category::misc},
    {"Open In Browser", "o", Category::misc},
    {"Toggle Menu", ",", Category::misc},
    {"Preview", "", Category::misc},
    {"Shortcuts", "", Category::misc},
    {"Show Toolbar", "⌥t", Category::misc},
    {"Use Experimental Scripting", "", Category::misc},
    {"Start at Login", "", Category::misc},
    {"Make Menu Sticky", "S", Category::misc},
    {"Quit", "q", Category::misc},
    {"Find", "f", Category::view},
    {"Actual Size", "0", Category::view},
    {"Zoom In", "+", Category::view},
    {"Zoom Out", "-", Category::view},
    {"Back", "[", Category::navigation},
    {"Forward", "]", Category::navigation},
    {"Reload", "r", Category::navigation},
    {"Reload From Origin", "⌥r", Category::navigation},
    {"Taller", "↓", Category::window},
    {"Shorter", "↑", Category::window},
    {"Slimmer", "→", Category::window},
    {"Wider", "←", Category::window},
    {"Toggle Full Screen", "f", Category::window},
    {"Scroll Up", "pgup", Category::scroll},
    {"Scroll Down", "pgdn", Category::scroll},
    {"Bard", "D", Category::sideBar},
    {"BitBucket", "b", Category::sideBar},
    {"ChatGPT", "t", Category::sideBar},
    {"GitLab", "g", Category::sideBar},
    {"Hemingway", "h", Category::sideBar},
    {"Jira", "j", Category::sideBar},
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
  if (category == Category::global || text.empty()) return std::string(text);
  if (category == Category::window || category == Category::sideBar)
    return behind(isCapitalizedAlpha(text) ? "⇧⌃⌘" : "⌃⌘");
  if (isCapitalizedAlpha(text)) return behind("⇧⌘");
  if (category == Category::scroll) return std::string(text);
  if (const auto place = text.find(optionGlyph); place != std::string_view::npos) {
    std::string rest(text);
    rest.erase(place, optionGlyph.size());
    return "⌥⌘" + rest;
  }
  return behind("⌘");
}

}  // namespace velkin
