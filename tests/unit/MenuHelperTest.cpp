#include "Helpers/UserDefaultsHelper.h"
#include "MenuHelper.h"
#include "Platform/FatalError.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSMenuItem;

class Listener : public MenuHelperDelegate {
 public:
  std::vector<std::string> calls;

  void aboutClicked() override { calls.emplace_back("about"); }
  void homeClicked() override { calls.emplace_back("home"); }
  void shortcutsClicked() override { calls.emplace_back("shortcuts"); }
  void appearanceClicked() override { calls.emplace_back("appearance"); }
  void preferencesClicked() override { calls.emplace_back("preferences"); }
  void previewClicked() override { calls.emplace_back("preview"); }
  void toolbarClicked() override { calls.emplace_back("toolbar"); }
  void stickyClicked() override { calls.emplace_back("sticky"); }
  void experimentalClicked() override { calls.emplace_back("experimental"); }
  void reloadClicked() override { calls.emplace_back("reload"); }
  void openClicked() override { calls.emplace_back("open"); }
  void quitClicked() override { calls.emplace_back("quit"); }
};

class MenuHelperTest : public testing::Test {
 protected:
  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  Listener listener;
};

TEST_F(MenuHelperTest, EachItemTellsTheDelegateItsOwnAction) {
  const MenuHelper helper(&listener);
  const std::vector<std::pair<MenuHelper::Item, std::string>> actions = {
      {helper.aboutMenuItem, "about"},
      {helper.shortcutsMenuItem, "shortcuts"},
      {helper.stickyMenuItem, "sticky"},
      {helper.showToolbarMenuItem, "toolbar"},
      {helper.experimentalMenuItem, "experimental"},
      {helper.preferencesMenuItem, "preferences"},
      {helper.previewMenuItem, "preview"},
      {helper.appearanceMenuItem, "appearance"},
      {helper.reloadMenuItem, "reload"},
      {helper.openMenuItem, "open"},
      {helper.quitMenuItem, "quit"}};
  for (const auto& [item, call] : actions) {
    listener.calls.clear();
    item->action();
    EXPECT_EQ(listener.calls, std::vector<std::string>{call});
  }
  EXPECT_FALSE(helper.versionMenuItem->action);
}

TEST_F(MenuHelperTest, WithoutADelegateNoItemDoesAnything) {
  const MenuHelper helper(nullptr);
  for (const auto& item : helper.menuItems) {
    if (item->action) item->action();
    EXPECT_EQ(item->target, nullptr);
  }
  helper.previewMenuItem->action();
}

TEST_F(MenuHelperTest, ThePreviewStandsInNoListAndHasNoKey) {
  const MenuHelper helper(&listener);
  for (const auto& item : helper.menuItems) EXPECT_NE(item, helper.previewMenuItem);
  EXPECT_EQ(helper.previewMenuItem->title(), "Preview");
  EXPECT_EQ(helper.previewMenuItem->keyEquivalent(), "");
}

TEST_F(MenuHelperTest, TheCheckMarksAreTheSettingsAtTheStartAndWhenTheyAreSetAgain) {
  using enum NSMenuItem::State;
  MenuHelper helper(&listener);
  EXPECT_EQ(helper.stickyMenuItem->state(), off);
  EXPECT_EQ(helper.showToolbarMenuItem->state(), on);
  EXPECT_EQ(helper.experimentalMenuItem->state(), off);
  const auto check = [&](UserDefault setting, const MenuHelper::Item& item) {
    for (const bool isOn : {true, false}) {
      defaults.set(isOn, setting);
      helper.setDefaultStates();
      EXPECT_EQ(item->state(), isOn ? on : off);
      EXPECT_EQ(MenuHelper(&listener).experimentalMenuItem->state(),
                defaults.experimentalEnabled() ? on : off);
    }
  };
  check(UserDefault::stickyMenu, helper.stickyMenuItem);
  check(UserDefault::showToolBar, helper.showToolbarMenuItem);
  check(UserDefault::experimentalEnabled, helper.experimentalMenuItem);
  helper.versionMenuItem->setEnabled(true);
  helper.setDefaultStates();
  EXPECT_FALSE(helper.versionMenuItem->isEnabled());
}

TEST_F(MenuHelperTest, TheVersionIsTheBundlesAndItsAbsenceIsFatal) {
  desktop.bundle.shortVersionString = "1.2.3";
  desktop.bundle.version = "45";
  EXPECT_EQ(MenuHelper::getVersionText(), "1.2.3 (45)");
  desktop.bundle.version.reset();
  EXPECT_EXIT(MenuHelper::getVersionText(), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
  desktop.bundle.version = "45";
  desktop.bundle.shortVersionString.reset();
  EXPECT_EXIT(MenuHelper::getVersionText(), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
}

TEST_F(MenuHelperTest, OnlyTheVersionIsDisabledAndOnlyScriptingIsHidden) {
  const MenuHelper helper(&listener);
  for (const auto& item : helper.menuItems) {
    EXPECT_EQ(item->isHidden(), item == helper.experimentalMenuItem) << item->title();
    const bool isEnabled = item->isSeparatorItem() || item->isEnabled();
    EXPECT_EQ(isEnabled, item != helper.versionMenuItem) << item->title();
  }
}

}  // namespace
}  // namespace velkin
