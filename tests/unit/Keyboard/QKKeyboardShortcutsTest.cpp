#include "Keyboard/QKKeyboardShortcuts.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

using enum QKKeyboardShortcuts;

std::string display(QKKeyboardShortcuts shortcut) {
  return getDisplayString(keyEquivalent(shortcut), category(shortcut));
}

struct Row {
  QKKeyboardShortcuts shortcut;
  const char* label;
  const char* shown;
};

class ShortcutRowTest : public testing::TestWithParam<Row> {};

TEST_P(ShortcutRowTest, HasItsLabelAndIsShownWithItsGlyphs) {
  EXPECT_EQ(rawValue(GetParam().shortcut), GetParam().label);
  EXPECT_EQ(display(GetParam().shortcut), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ShortcutRowTest,
    testing::Values(Row{about, "About Velkin", ""}, Row{appearance, "Appearance...", "⇧⌘A"},
                    Row{openBrowser, "Open In Browser", "⌘o"}, Row{preferencesMenu, "Toggle Menu", "⌘,"},
                    Row{previewMenu, "Preview", ""}, Row{shortcuts, "Shortcuts", ""},
                    Row{toolbar, "Show Toolbar", "⌥⌘t"},
                    Row{experimentalEnabled, "Use Experimental Scripting", ""},
                    Row{startAtLogin, "Start at Login", ""}, Row{stickyMenu, "Make Menu Sticky", "⇧⌘S"},
                    Row{quit, "Quit", "⌘q"}, Row{find, "Find", "⌘f"}, Row{actualSize, "Actual Size", "⌘0"},
                    Row{zoomIn, "Zoom In", "⌘+"}, Row{zoomOut, "Zoom Out", "⌘-"}, Row{back, "Back", "⌘["},
                    Row{forward, "Forward", "⌘]"}, Row{reload, "Reload", "⌘r"},
                    Row{reloadOrigin, "Reload From Origin", "⌥⌘r"}, Row{windowTaller, "Taller", "⌃⌘↓"},
                    Row{windowShorter, "Shorter", "⌃⌘↑"}, Row{windowSlimmer, "Slimmer", "⌃⌘→"},
                    Row{windowWider, "Wider", "⌃⌘←"}, Row{windowFullScreen, "Toggle Full Screen", "⌃⌘f"},
                    Row{scrollUp, "Scroll Up", "pgup"}, Row{scrollDn, "Scroll Down", "pgdn"},
                    Row{sideBard, "Bard", "⇧⌃⌘D"}, Row{sideBitBucket, "BitBucket", "⌃⌘b"},
                    Row{sideChatGPT, "ChatGPT", "⌃⌘t"}, Row{sideGitLab, "GitLab", "⌃⌘g"},
                    Row{sideHemingway, "Hemingway", "⌃⌘h"}, Row{sideJira, "Jira", "⌃⌘j"}));

TEST(QKKeyboardShortcutsTest, CategoriesHaveTheirNamesInOrder) {
  std::string names;
  for (const auto category : allQKKeyboardShortcutCategories) names.append(rawValue(category)).append(" ");
  EXPECT_EQ(names, "Global Misc Scroll SideBar View Navigation Window ");
}

TEST(QKKeyboardShortcutsTest, AGlobalShortcutsTextIsShownAsItIs) {
  EXPECT_EQ(getDisplayString("⇧⌘T", QKKeyboardShortcutCategory::global), "⇧⌘T");
  EXPECT_EQ(getDisplayString("", QKKeyboardShortcutCategory::global), "");
}

}  // namespace
}  // namespace velkin
