#include "Keyboard/GlobalShortcutsEditUIView.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/ShortcutLegend.h"
#include "Keyboard/ShortcutsUIView.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using KeyboardShortcuts::Name;
using KeyboardShortcuts::Shortcut;

class ShortcutsUIViewTest : public testing::Test {
 protected:
  ~ShortcutsUIViewTest() override { KeyboardShortcuts::shutDown(); }

  static std::vector<std::string> texts(const platform::HeadlessHostingView& tree) {
    std::vector<std::string> all;
    for (const auto* view : tree.all<platform::TextContent>()) all.push_back(view->text());
    return all;
  }
  static std::size_t at(const std::vector<std::string>& all, const std::string& text) {
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), text) - all.begin());
  }

  platform::HeadlessPlatform desktop;
  AdditionalViews additionalViews;
};

TEST_F(ShortcutsUIViewTest, HasASectionForEachCategoryInOrderAndTheLegend) {
  additionalViews.set(true);
  platform::NSHostingController host(ShortcutsUIView{});
  const auto all = texts(platform::headlessTree(host));
  const std::vector<std::string> headings = {"Global", "Misc",       "Scroll", "SideBar",
                                             "View",   "Navigation", "Window"};
  std::size_t before = 0;
  for (const auto& heading : headings) {
    const auto place = at(all, heading);
    ASSERT_LT(place, all.size()) << heading;
    EXPECT_GE(place, before) << heading;
    before = place;
  }
  EXPECT_LT(at(all, std::string(shortcutLegend)), all.size());
}

TEST_F(ShortcutsUIViewTest, TheRowsOfASectionStandInTheirOrderWithTheirKeys) {
  platform::NSHostingController host(ShortcutsUIView{});
  const auto all = texts(platform::headlessTree(host));
  const auto misc = at(all, "Misc");
  const std::vector<std::string> expected = {
      "Misc",        "About Velkin", "Appearance...", "⇧⌘A",       "Open In Browser", "⌘o",
      "Toggle Menu", "⌘,",           "Preview",       "Shortcuts", "Show Toolbar",    "⌥⌘t"};
  ASSERT_LE(misc + expected.size(), all.size());
  EXPECT_EQ(std::vector<std::string>(all.begin() + static_cast<std::ptrdiff_t>(misc),
                                     all.begin() + static_cast<std::ptrdiff_t>(misc + expected.size())),
            expected);
}

TEST_F(ShortcutsUIViewTest, TheSideBarsRowsComeAndGoWithTheAdditionalViewsAtOnce) {
  platform::NSHostingController host(ShortcutsUIView{});
  auto& tree = platform::headlessTree(host);
  EXPECT_FALSE(tree.showsText("SideBar"));
  EXPECT_TRUE(tree.showsText("-- Edit URL & API Key --"));
  additionalViews.set(true);
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("SideBar"));
  EXPECT_TRUE(tree.showsText("⇧⌃⌘D"));
  EXPECT_TRUE(tree.showsText("-- Edit URLs & API Key --"));
  additionalViews.set(false);
  desktop.queue.drain();
  EXPECT_FALSE(tree.showsText("SideBar"));
}

TEST_F(ShortcutsUIViewTest, TheGlobalRowsFollowAChangeAtOnce) {
  platform::NSHostingController host(ShortcutsUIView{});
  auto& tree = platform::headlessTree(host);
  const auto shown = [&](const std::string& text) {
    const auto all = texts(tree);
    return std::count(all.begin(), all.end(), text);
  };
  EXPECT_EQ(shown("⇧⌘T"), 2) << "the row and its recorder";
  KeyboardShortcuts::setShortcut(Shortcut(KeyboardShortcuts::Key::y, platform::NSEvent::commandFlag),
                                 Name::popUpShortcut());
  desktop.queue.drain();
  EXPECT_EQ(shown("⌘Y"), 2);
  KeyboardShortcuts::setShortcut(std::nullopt, Name::popUpShortcut());
  desktop.queue.drain();
  EXPECT_EQ(shown("⌘Y"), 0);
}

TEST_F(ShortcutsUIViewTest, WithoutItsGlobalSectionItHasTheRecordersAlone) {
  platform::NSHostingController host(ShortcutsUIView{.showGlobal = false});
  auto& tree = platform::headlessTree(host);
  EXPECT_FALSE(tree.showsText("Global"));
  EXPECT_TRUE(tree.showsText("PopUp:"));
  EXPECT_TRUE(tree.showsText("SearchBar:"));
}

TEST_F(ShortcutsUIViewTest, WhereTheDesktopGivesNoKeysTheCommandsCanBeCopied) {
  desktop.keyboard.shownNotice = platform::HotKeyNotice{"No shortcuts here.", {{"Open it", "command one"}}};
  platform::NSHostingController host(GlobalShortcutsEditUIView{});
  auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("No shortcuts here."));
  EXPECT_FALSE(tree.showsText("PopUp:"));
  tree.control("Copy the command")->press();
  EXPECT_EQ(desktop.pasteboard.string, "command one");
}

TEST_F(ShortcutsUIViewTest, WhereTheDesktopHandsKeysOutAButtonLeadsToItsSettings) {
  int opened = 0;
  desktop.keyboard.grantedTriggers.emplace();
  {
    platform::NSHostingController host(GlobalShortcutsEditUIView{});
    EXPECT_EQ(platform::headlessTree(host).control("Open Keyboard Settings…"), nullptr)
        << "no way there is known";
  }
  desktop.keyboard.opener = [&] { ++opened; };
  platform::NSHostingController granted(GlobalShortcutsEditUIView{});
  ASSERT_NE(platform::headlessTree(granted).control("Open Keyboard Settings…"), nullptr);
  platform::headlessTree(granted).control("Open Keyboard Settings…")->press();
  EXPECT_EQ(opened, 1);
  desktop.keyboard.shownNotice = platform::HotKeyNotice{"No shortcuts here.", {{"Open it", "command one"}}};
  platform::NSHostingController refused(GlobalShortcutsEditUIView{});
  platform::headlessTree(refused).control("Open Keyboard Settings…")->press();
  EXPECT_EQ(opened, 2);
}

TEST_F(ShortcutsUIViewTest, WhereAProgramTakesItsKeysItselfThereIsNoSuchButton) {
  desktop.keyboard.opener = [] {};
  platform::NSHostingController host(GlobalShortcutsEditUIView{});
  EXPECT_EQ(platform::headlessTree(host).control("Open Keyboard Settings…"), nullptr);
}

TEST(ShortcutLegendTest, SpellsShortcutsOutAsThisKeyboardsUsersDo) {
  EXPECT_EQ(spelledOut("⇧⌘T"), "Ctrl+Shift+T");
  EXPECT_EQ(spelledOut("⇧⌃⌘D"), "Ctrl+Super+Shift+D");
  EXPECT_EQ(spelledOut("⌥⌘r"), "Ctrl+Alt+R");
  EXPECT_EQ(spelledOut("⌃⌘↓"), "Ctrl+Super+Down");
  EXPECT_EQ(spelledOut("pgup"), "Page Up");
  EXPECT_EQ(spelledOut("F5"), "F5");
  EXPECT_EQ(spelledOut(""), "");
}

}  // namespace
}  // namespace velkin
