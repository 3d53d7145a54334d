#include "ReleaseNotes/BuildNotes.h"

#include <array>

namespace velkin {

namespace {

using Text = std::string_view;

constexpr auto buildFeatures = std::to_array<Text>({
    "Tray: Velkin lives in the system tray of your desktop. Left click for the popover, right click for the "
    "menu.",
    "Popover: A page stays loaded while the popover is closed, so that it opens again at once.",
    "Web Pages: Downloads go to your download folder and never replace a file that is there.",
    "Web Pages: Camera, microphone and location are asked for once, and the answer is kept for the site.",
    "Settings: Every change is on disk at once and survives a crash.",
    "Export: ⌘P saves the page on show as a PDF, ⌘S with all that it shows.",
    "About: \"Start at Login\" puts the icon into the tray after each login.",
});
constexpr auto buildFixes = std::to_array<Text>({
    "Web Pages: A page whose process ended stayed blank. It now loads again by itself.",
    "Settings: A damaged settings file is kept beside the new one instead of being lost.",
});

constexpr auto build22Features = std::to_array<Text>({
    "Export: Settings travel to another machine as a JSON document.",
    "About: Import and export buttons.",
});
constexpr auto build22Fixes = std::to_array<Text>({
    "Sidebar Group: ⌘4 keyboard shortcut would fail to open sidebar group.",
});

constexpr auto build21Features = std::to_array<Text>({
    "Shortcuts: Global shortcuts for the popover and the search bar can be recorded.",
    "Shortcuts: A panel lists every shortcut by category.",
});
constexpr auto build21Fixes = std::to_array<Text>({
    "Shortcuts: A shortcut that the desktop uses itself is refused with a message.",
});

constexpr auto build20Features = std::to_array<Text>({
    "Search Bar: The last 7 searches can be recalled.",
    "Search Bar: \"Clear Recents\" forgets them.",
});

constexpr auto build19Features = std::to_array<Text>({
    "Search Bar: Ask from any application with a floating prompt.",
    "Search Bar: Answers are shown as formatted text and can be copied.",
});
constexpr auto build19Fixes = std::to_array<Text>({
    "Markdown: Tables with an empty last cell lost their last column.",
    "Markdown: A code block at the very end of a text was not closed.",
});

constexpr auto build18Features = std::to_array<Text>({
    "Sidebar Group: Store up to four arrangements and call them with ⌘1 to ⌘4.",
});
constexpr auto build18Fixes = std::to_array<Text>({
    "Sidebar: Zoom was not applied to a sidebar that had just been opened.",
});

constexpr auto build17Features = std::to_array<Text>({
    "Sidebar: Any page can stand beside the main one.",
    "Popover: Full size with one key, and back to the size before.",
});

constexpr auto build16Features = std::to_array<Text>({
    "Save: Pages save as a web archive or as PDF.",
});
constexpr auto build16Fixes = std::to_array<Text>({
    "Save: PDF of a long page ended after the first screen.",
});

constexpr auto build15Fixes = std::to_array<Text>({
    "Popover: Closed when a page opened its own menu.",
    "Popover: Opened on the wrong screen after a monitor was unplugged.",
    "Find: Find bar kept the keyboard after it was closed.",
});

constexpr auto build14Features = std::to_array<Text>({
    "Markdown: A scratchpad with live preview at the bottom or at the right.",
    "Markdown: Tool bars insert headings, lists, links and tables.",
});
constexpr auto build14Fixes = std::to_array<Text>({
    "Appearance: Preview did not follow the selected height.",
});

constexpr auto build13Features = std::to_array<Text>({
    "Appearance: Choose width, height and font size with a preview on your desktop picture.",
});

constexpr auto build12Features = std::to_array<Text>({
    "Toolbar: Buttons for back, forward, reload and page settings.",
    "Toolbar: \"Show Toolbar\" in the right-click menu hides it.",
});
constexpr auto build12Fixes = std::to_array<Text>({
    "Dark Mode: Release notes stayed light after the desktop turned dark.",
});

constexpr auto build11Features = std::to_array<Text>({
    "Onboarding: A first-run tour sets address, font size and shortcuts.",
});
constexpr auto build11Fixes = std::to_array<Text>({
    "Page Settings: An address with a blank at its end was saved.",
});

constexpr auto build10Features = std::to_array<Text>({
    "Find: Find in page with ⌘F, next and previous match with a click.",
    "Zoom: ⌘+ and ⌘- change the font size, ⌘0 puts it back.",
});

constexpr auto build9Fixes = std::to_array<Text>({
    "Chat: Page that had been left for hours asked to sign in at the first prompt. It now reloads by itself.",
});

constexpr auto build8Features = std::to_array<Text>({
    "Menu: \"Sticky\" keeps the popover open while you work elsewhere.",
});
constexpr auto build8Fixes = std::to_array<Text>({
    "Menu: Check marks were not restored after a restart.",
});

constexpr auto build7Features = std::to_array<Text>({
    "Start: Velkin can start when you log in.",
});

constexpr auto build6Fixes = std::to_array<Text>({
    "Modifier keyUp not updating didPress values correctly.",
    "Edit: Copy and paste did not reach text fields of a page.",
});

constexpr BuildNotes currentNotes = {23, buildFeatures, buildFixes};

constexpr auto earlierNotes = std::to_array<BuildNotes>({
    {22, build22Features, build22Fixes},
    {21, build21Features, build21Fixes},
    {20, build20Features, {}},
    {19, build19Features, build19Fixes},
    {18, build18Features, build18Fixes},
    {17, build17Features, {}},
    {16, build16Features, build16Fixes},
    {15, {}, build15Fixes},
    {14, build14Features, build14Fixes},
    {13, build13Features, {}},
    {12, build12Features, build12Fixes},
    {11, build11Features, build11Fixes},
    {10, build10Features, {}},
    {9, {}, build9Fixes},
    {8, build8Features, build8Fixes},
    {7, build7Features, {}},
    {6, {}, build6Fixes},
});

}  // namespace

const BuildNotes& currentBuildNotes() noexcept { return currentNotes; }

std::span<const BuildNotes> earlierBuildNotes() noexcept { return earlierNotes; }

}  // namespace velkin
