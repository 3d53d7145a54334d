#include "Platform/DebugLog.h"
#include "Platform/Gtk/PortalHotKeyGrabs.h"
#include "gtk/GtkFixture.h"
#include "gtk/HotKeys.h"
#include "gtk/MockShortcutsPortal.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace {

constexpr HotKeyCombination altSuperF5{0x60, carbon::optionKey | carbon::controlKey};
using Strings = std::vector<std::string>;

class PortalHotKeyGrabsTest : public GtkFixture {
 protected:
  PortalHotKeyGrabsTest()
      : bus(GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))) {
    setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~PortalHotKeyGrabsTest() override {
    grabs.reset();
    turn();
    setDebugLogSink({});
  }

  void start(const MockShortcutsPortal::Options& options) {
    portal = std::make_unique<MockShortcutsPortal>(options);
  }
  void makeGrabs() {
    grabs = std::make_unique<PortalHotKeyGrabs>(
        PortalHotKeyGrabs::Surroundings{[this] { return bus.get(); }, [](const auto& work) { work(); }},
        [this](HotKeyCombination combination, bool isDown, const Activation& activation) {
          told.push_back((isDown ? "down " : "up ") + std::to_string(combination.keyCode) + activation.token);
        });
  }
  void grabBoth() {
    grabs->describe(ctrlShiftT, "popUp", "Open it");
    EXPECT_EQ(grabs->grab(ctrlShiftT), noErr);
    grabs->describe(altSuperF5, "search", "Search");
    EXPECT_EQ(grabs->grab(altSuperF5), noErr);
  }
  bool waitForCall(const std::string& call) {
    return wait(
        [&] { return std::find(portal->calls.begin(), portal->calls.end(), call) != portal->calls.end(); });
  }
  bool hasLogged(const std::string& text) const {
    return std::any_of(log.begin(), log.end(),
                       [&](const auto& line) { return line.find(text) != std::string::npos; });
  }
  bool waitForLog(const std::string& text) {
    return wait([&] { return hasLogged(text); });
  }
  bool press(const std::string& name, const std::string& token = {}) {
    const auto before = told.size();
    portal->press(name, token);
    return wait([&] { return told.size() > before; });
  }

  GObjectPtr<GDBusConnection> bus;
  std::unique_ptr<MockShortcutsPortal> portal;
  Strings told;
  Strings log;
  std::unique_ptr<PortalHotKeyGrabs> grabs;
};

TEST_F(PortalHotKeyGrabsTest, AllShortcutsOfOneTurnAreBoundTogetherByTheirNames) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForCall("BindShortcuts popUp search"));
  EXPECT_EQ(portal->calls, (Strings{"Register com.tarnvale.Velkin", "CreateSession", "ListShortcuts",
                                    "BindShortcuts popUp search"}));
  EXPECT_EQ(portal->descriptionAndTrigger["popUp"],
            (std::pair<std::string, std::string>{"Open it", "CTRL+SHIFT+t"}));
  EXPECT_EQ(portal->descriptionAndTrigger["search"],
            (std::pair<std::string, std::string>{"Search", "ALT+LOGO+F5"}));
  EXPECT_TRUE(waitForLog("The desktop has bound popUp to Press <Some>Key"));
  EXPECT_EQ(grabs->notice(), std::nullopt);
}

TEST_F(PortalHotKeyGrabsTest, APortalThatTakesThemWhenTheSessionIsMadeIsAskedForNothingMore) {
  start({.takesThemAtCreation = true});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  EXPECT_EQ(portal->descriptionAndTrigger["popUp"],
            (std::pair<std::string, std::string>{"Open it", "CTRL+SHIFT+t"}));
  EXPECT_EQ(portal->calls.back(), "ListShortcuts");
  EXPECT_FALSE(grabs->notice());
}

TEST_F(PortalHotKeyGrabsTest, ABindingOfNothingIsAFailureThatIsTold) {
  start({});
  portal->bindsNothing = true;
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("There are no global shortcuts"));
  EXPECT_TRUE(grabs->notice());
}

TEST_F(PortalHotKeyGrabsTest, ActivationAndItsEndAreToldAsPressAndRelease) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  ASSERT_TRUE(press("search", " token"));
  portal->release("search");
  ASSERT_TRUE(wait([&] { return told.size() == 2; }));
  EXPECT_EQ(told, (Strings{"down 96 token", "up 96"}));
}

TEST_F(PortalHotKeyGrabsTest, OthersShortcutsAreNone) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  portal->press("unknown");
  portal->pressInSession("/some/other/session", "search");
  ASSERT_TRUE(press("popUp"));
  EXPECT_EQ(told, Strings{"down 17"});
}

TEST_F(PortalHotKeyGrabsTest, WhatTheDesktopRemembersIsNotAskedAgain) {
  start({.remembered = {"search", "popUp", "more"}});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  EXPECT_EQ(portal->calls.back(), "ListShortcuts");
  EXPECT_TRUE(press("popUp"));
}

TEST_F(PortalHotKeyGrabsTest, WhatTheDesktopRemembersInPartIsAsked) {
  start({.remembered = {"popUp"}});
  makeGrabs();
  grabBoth();
  EXPECT_TRUE(waitForCall("BindShortcuts popUp search"));
}

TEST_F(PortalHotKeyGrabsTest, APortalWithoutARegistryServesToo) {
  start({.hasRegistry = false});
  makeGrabs();
  grabBoth();
  EXPECT_TRUE(waitForCall("BindShortcuts popUp search"));
}

TEST_F(PortalHotKeyGrabsTest, ChangedNamesGetANewSession) {
  start({});
  makeGrabs();
  grabs->describe(ctrlShiftT, "popUp", "Open it");
  grabs->grab(ctrlShiftT);
  ASSERT_TRUE(waitForCall("BindShortcuts popUp"));
  grabs->describe(altSuperF5, "search", "Search");
  grabs->grab(altSuperF5);
  ASSERT_TRUE(waitForCall("BindShortcuts popUp search"));
  EXPECT_EQ(std::count(portal->calls.begin(), portal->calls.end(), "Close"), 1);
  ASSERT_TRUE(wait([&] { return hasLogged("has bound search"); }));
  grabs->ungrab(altSuperF5);
  ASSERT_TRUE(wait(
      [&] { return std::count(portal->calls.begin(), portal->calls.end(), "BindShortcuts popUp") == 2; }));
}

TEST_F(PortalHotKeyGrabsTest, AnotherCombinationForANameIsTheUsersBusinessInTheDesktop) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  const auto before = portal->calls.size();
  grabs->ungrab(ctrlShiftT);
  const HotKeyCombination other{0x05, carbon::cmdKey};
  grabs->describe(other, "popUp", "Open it");
  grabs->grab(other);
  ASSERT_TRUE(press("search"));
  EXPECT_EQ(portal->calls.size(), before);
  ASSERT_TRUE(press("popUp"));
  EXPECT_EQ(told.back(), "down 5") << "it is told as what it is registered as";
}

void expectCommands(const std::optional<HotKeyNotice>& notice) {
  ASSERT_TRUE(notice);
  EXPECT_NE(notice->text.find("no global shortcuts"), std::string::npos);
  ASSERT_EQ(notice->commands.size(), 2U);
  EXPECT_EQ(notice->commands[0].commandLine, "gapplication action com.tarnvale.Velkin toggle-popover");
  EXPECT_EQ(notice->commands[1].commandLine, "gapplication action com.tarnvale.Velkin toggle-search");
}

TEST_F(PortalHotKeyGrabsTest, ANewPortalShowsItsOwnSettingsOfTheKeys) {
  start({.version = 2});
  makeGrabs();
  EXPECT_FALSE(grabs->settingsOpener()) << "nothing is bound yet";
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  // The library that knows the programs hears of a new file a moment later.
  std::function<void()> open;
  ASSERT_TRUE(wait([&] { return (open = grabs->settingsOpener()) != nullptr; }));
  open();
  EXPECT_TRUE(waitForCall("ConfigureShortcuts"));
  grabs.reset();
  open();
  turn();
}

TEST_F(PortalHotKeyGrabsTest, AnOlderOneLeavesThatToTheDesktopsSettingsProgram) {
  // A settings program of a desktop that is known, which only writes down that it was started.
  const std::filesystem::path home = g_get_user_data_dir();
  const auto started = home / "settings-started";
  std::filesystem::create_directories(home / "applications");
  std::filesystem::remove(started);
  const auto file = home / "applications" / "xfce-keyboard-settings.desktop";
  std::ofstream(file) << "[Desktop Entry]\nType=Application\nName=Keyboard\nExec=touch " << started.string()
                      << "\n";
  const std::string before =
      std::getenv("XDG_CURRENT_DESKTOP") != nullptr ? std::getenv("XDG_CURRENT_DESKTOP") : "";
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  g_setenv("XDG_CURRENT_DESKTOP", "Unknown", TRUE);
  EXPECT_FALSE(grabs->settingsOpener()) << "no way there is known";
  g_setenv("XDG_CURRENT_DESKTOP", "Somebodys:XFCE", TRUE);
  const auto open = grabs->settingsOpener();
  ASSERT_TRUE(open);
  open();
  EXPECT_TRUE(wait([&] { return std::filesystem::exists(started); }));
  std::filesystem::remove(file);
  g_setenv("XDG_CURRENT_DESKTOP", before.c_str(), TRUE);
}

TEST_F(PortalHotKeyGrabsTest, WithoutAPortalTheCommandsAreNamed) {
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("gapplication action com.tarnvale.Velkin toggle-search"));
  EXPECT_TRUE(hasLogged("There are no global shortcuts: "));
  expectCommands(grabs->notice());
}

TEST_F(PortalHotKeyGrabsTest, APortalThatIsTooOldIsNone) {
  start({.hasShortcuts = false});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("There are no global shortcuts: "));
  expectCommands(grabs->notice());
}

TEST_F(PortalHotKeyGrabsTest, WithoutABusTheCommandsAreNamedToo) {
  bus = {};
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("There are no global shortcuts: there is no D-Bus session"));
}

TEST_F(PortalHotKeyGrabsTest, AUserWhoSaysNoIsNotAskedAgain) {
  start({.answer = 1});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("There are no global shortcuts: they were not allowed"));
  expectCommands(grabs->notice());
  grabs->describe(ctrlShiftT, "popUp", "Open it");
  turn();
  EXPECT_EQ(std::count(portal->calls.begin(), portal->calls.end(), "CreateSession"), 1);
}

TEST_F(PortalHotKeyGrabsTest, APortalThatStartsAgainIsAskedAgain) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  portal.reset();
  log.clear();
  start({});
  ASSERT_TRUE(waitForLog("has bound search"));
  EXPECT_TRUE(press("popUp"));
}

TEST_F(PortalHotKeyGrabsTest, ItsEndClosesTheSession) {
  start({});
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  grabs.reset();
  EXPECT_TRUE(waitForCall("Close"));
}

TEST_F(PortalHotKeyGrabsTest, ItsEndBetweenQuestionAndAnswerDoesNoHarm) {
  start({});
  for (int turns = 0; turns < 12; ++turns) {
    makeGrabs();
    grabBoth();
    for (int i = 0; i < turns; ++i) g_main_context_iteration(nullptr, FALSE);
    grabs.reset();
    turn();
  }
  makeGrabs();
  grabBoth();
  ASSERT_TRUE(waitForLog("has bound search"));
  EXPECT_TRUE(press("popUp"));
}

TEST_F(PortalHotKeyGrabsTest, IsForSessionsThatXSeesOnlyAPartOf) {
  const GStringPtr type(g_strdup(g_getenv("XDG_SESSION_TYPE")));
  g_unsetenv("XDG_SESSION_TYPE");
  EXPECT_FALSE(PortalHotKeyGrabs::isNeeded());
  g_setenv("XDG_SESSION_TYPE", "x11", TRUE);
  EXPECT_FALSE(PortalHotKeyGrabs::isNeeded());
  g_setenv("XDG_SESSION_TYPE", "wayland", TRUE);
  EXPECT_TRUE(PortalHotKeyGrabs::isNeeded());
  g_unsetenv("XDG_SESSION_TYPE");
  g_setenv("WAYLAND_DISPLAY", "wayland-0", TRUE);
  EXPECT_TRUE(PortalHotKeyGrabs::isNeeded());
  g_unsetenv("WAYLAND_DISPLAY");
  if (type) g_setenv("XDG_SESSION_TYPE", type.get(), TRUE);
}

}  // namespace
}  // namespace platform
