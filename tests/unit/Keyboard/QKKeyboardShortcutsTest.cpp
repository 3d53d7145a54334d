#include "Keyboard/QKKeyboardShortcuts.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

using enum QKKeyboardShortcuts;

std::string display(QKKeyboardShortcuts shortcut) {
  return getDisplayString(keyEquivalent(shortcut), category(shortcut));
}

struct LabelRow {
  QKKeyboardShortcuts shortcut;
  const char* label;
  const char* shown;
};

class ShortcutRowTest : public testing::TestWithParam<LabelRow> {};

TEST_P(ShortcutRowTest, HasItsLabelAndIsShownWithItsGlyphs) {
  EXPECT_EQ(rawValue(GetParam().shortcut), GetParam().label);
  EXPECT_EQ(display(GetParam().shortcut), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ShortcutRowTest,
    testing::Values(LabelRow{about, "About Velkin", ""}, LabelRow{appearance, "Appearance...", "⇧⌘A"},
                    LabelRow{openBrowser, "Open In Browser", "⌘o"},
                    LabelRow{preferencesMenu, "Toggle Menu", "⌘,"}, LabelRow{previewMenu, "Preview", ""},
                    LabelRow{shortcuts, "Shortcuts", ""}, LabelRow{toolbar, "Show Toolbar", "⌥⌘t"},
                    LabelRow{experimentalEnabled, "Use Experimental Scripting", ""},
                    LabelRow{startAtLogin, "Start at Login", ""},
                    LabelRow{stickyMenu, "Make Menu Sticky", "⇧⌘S"}, LabelRow{quit, "Quit", "⌘q"},
                    LabelRow{find, "Find", "⌘f"}, LabelRow{actualSize, "Actual Size", "⌘0"},
                    LabelRow{zoomIn, "Zoom In", "⌘+"}, LabelRow{zoomOut, "Zoom Out", "⌘-"},
                    LabelRow{back, "Back", "⌘["}, LabelRow{forward, "Forward", "⌘]"},
                    LabelRow{reload, "Reload", "⌘r"}, LabelRow{reloadOrigin, "Reload From Origin", "⌥⌘r"},
                    LabelRow{windowTaller, "Taller", "⌃⌘↓"}, LabelRow{windowShorter, "Shorter", "⌃⌘↑"},
                    LabelRow{windowSlimmer, "Slimmer", "⌃⌘→"}, LabelRow{windowWider, "Wider", "⌃⌘←"},
                    LabelRow{windowFullScreen, "Toggle Full Screen", "⌃⌘f"},
                    LabelRow{scrollUp, "Scroll Up", "pgup"}, LabelRow{scrollDn, "Scroll Down", "pgdn"},
                    LabelRow{sideBard, "Bard", "⇧⌃⌘D"}, LabelRow{sideBitBucket, "BitBucket", "⌃⌘b"},
                    LabelRow{sideChatGPT, "ChatGPT", "⌃⌘t"}, LabelRow{sideGitLab, "GitLab", "⌃⌘g"},
                    LabelRow{sideHemingway, "Hemingway", "⌃⌘h"}, LabelRow{sideJira, "Jira", "⌃⌘j"}));

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
