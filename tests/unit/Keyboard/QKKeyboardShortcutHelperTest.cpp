#include "Keyboard/QKKeyboardShortcutHelper.h"
#include "Keyboard/VirtualKeyCode.h"
#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/WebViewSwitchType.h"
#include "unit/Keyboard/RouterModel.h"
#include "unit/Repetitions.h"

#include <array>
#include <memory>
#include <random>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSApp;
using platform::NSEvent;

using Calls = std::vector<std::string>;

/// Writes down what the router asks for.
class Recorder : public QKKeyboardShortcutHelperDelegate, public MenuHelperDelegate {
 public:
  Calls calls;
  bool searchBarOpen = false;

  bool isSearchBarOpen() const override { return searchBarOpen; }
  void setIsSearchBarOpen(bool isOpen) override { searchBarOpen = isOpen; }
  void switchWebViewsClicked(int number) override { note("switchWebViewsClicked " + std::to_string(number)); }
  void handlePopOverBehaviorUpdate(std::optional<bool> value) override {
    note(std::string("handlePopOverBehaviorUpdate ") + (value ? (*value ? "true" : "false") : "nil"));
  }
  void handlePrintAction() override { note("handlePrintAction"); }
  void handleScreenCaptureAction() override { note("handleScreenCaptureAction"); }
  void handleWindowFindOnPage() override { note("handleWindowFindOnPage"); }
  void handleWindowBardOnPage() override { note("handleWindowBardOnPage"); }
  void handleWindowBitBucketOnPage() override { note("handleWindowBitBucketOnPage"); }
  void handleWindowChatOnPage() override { note("handleWindowChatOnPage"); }
  void handleWindowGitLabOnPage() override { note("handleWindowGitLabOnPage"); }
  void handleWindowHemingwayOnPage() override { note("handleWindowHemingwayOnPage"); }
  void handleWindowJiraOnPage() override { note("handleWindowJiraOnPage"); }
  void handleWindowMarkdownOnPage() override { note("handleWindowMarkdownOnPage"); }
  void handleZoomActual() override { note("handleZoomActual"); }
  void handleZoomIn() override { note("handleZoomIn"); }
  void handleZoomOut() override { note("handleZoomOut"); }
  void handleSideGroupClick(int number) override { note("handleSideGroupClick " + std::to_string(number)); }
  void handleForward() override { note("handleForward"); }
  void handleBack() override { note("handleBack"); }
  void handleReloadFromOrigin() override { note("handleReloadFromOrigin"); }
  void handleWindowFullScreen() override { note("handleWindowFullScreen"); }
  void handleWindowTaller() override { note("handleWindowTaller"); }
  void handleWindowShorter() override { note("handleWindowShorter"); }
  void handleWindowWider() override { note("handleWindowWider"); }
  void handleWindowSlimmer() override { note("handleWindowSlimmer"); }
  void handlePageUp() override { note("handlePageUp"); }
  void handlePageDown() override { note("handlePageDown"); }
  void handleEnter() override { note("handleEnter"); }
  void handleEsc() override { note("handleEsc"); }
  void aboutClicked() override { note("aboutClicked"); }
  void homeClicked() override { note("homeClicked"); }
  void shortcutsClicked() override { note("shortcutsClicked"); }
  void appearanceClicked() override { note("appearanceClicked"); }
  void preferencesClicked() override { note("preferencesClicked"); }
  void previewClicked() override { note("previewClicked"); }
  void toolbarClicked() override { note("toolbarClicked"); }
  void stickyClicked() override { note("stickyClicked"); }
  void experimentalClicked() override { note("experimentalClicked"); }
  void reloadClicked() override { note("reloadClicked"); }
  void openClicked() override { note("openClicked"); }
  void quitClicked() override { note("quitClicked"); }

 private:
  void note(std::string call) { calls.push_back(std::move(call)); }
};

enum Modifier : unsigned { none = 0, cmd = 1, ctl = 2, shf = 4, opt = 8 };

std::uint32_t bitsOf(unsigned modifiers) {
  return ((modifiers & cmd) != 0 ? NSEvent::commandFlag : 0) |
         ((modifiers & ctl) != 0 ? NSEvent::controlFlag : 0) |
         ((modifiers & shf) != 0 ? NSEvent::shiftFlag : 0) |
         ((modifiers & opt) != 0 ? NSEvent::optionFlag : 0);
}

class RouterTest : public testing::Test {
 protected:
  RouterTest() {
    desktop.app.responder = [this](const std::string& selector) {
      recorder.calls.push_back(selector);
      return takesActions;
    };
    router = std::make_unique<QKKeyboardShortcutHelper>(recorder, popover, statusItem, recorder);
  }
  ~RouterTest() override { platform::setDebugLogSink({}); }

  /// True if the event goes on to the window.
  bool deliver(NSEvent::EventType type, int code, unsigned modifiers, const std::string& characters = "") {
    NSEvent event{.type = type};
    event.keyCode = static_cast<std::uint16_t>(code);
    event.modifierFlags = bitsOf(modifiers);
    event.charactersIgnoringModifiers = characters;
    return NSApp().filterByMonitors(event).has_value();
  }
  bool flags(unsigned modifiers) { return deliver(NSEvent::EventType::flagsChanged, 0, modifiers); }
  bool down(int code, unsigned modifiers, const std::string& characters = "") {
    return deliver(NSEvent::EventType::keyDown, code, modifiers, characters);
  }
  bool up(int code, unsigned modifiers) { return deliver(NSEvent::EventType::keyUp, code, modifiers); }

  /// As a user presses and releases a combination; true if the press went on to the window.
  bool press(int code, unsigned modifiers, const std::string& characters = "") {
    flags(modifiers);
    const bool hasPassed = down(code, modifiers, characters);
    up(code, modifiers);
    flags(none);
    router->resetKeyPressBools();
    return hasPassed;
  }
  Calls callsOf(int code, unsigned modifiers, const std::string& characters = "") {
    recorder.calls.clear();
    press(code, modifiers, characters);
    return recorder.calls;
  }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  Recorder recorder;
  platform::HeadlessPopover popover;
  platform::HeadlessStatusItem statusItem{28};
  bool takesActions = false;
  std::unique_ptr<QKKeyboardShortcutHelper> router;
};

struct Row {
  const char* name;
  int code;
  unsigned modifiers;
  const char* call;
  /// Modifiers whose presence or absence makes no difference to the row.
  unsigned indifferent = none;
};

const std::array combinationRows = {
    Row{"quit", key::q, cmd, "quitClicked"},
    Row{"appearance", key::a, cmd | shf, "appearanceClicked"},
    Row{"find", key::f, cmd, "handleWindowFindOnPage"},
    Row{"group1", key::one, cmd, "handleSideGroupClick 1"},
    Row{"group2", key::two, cmd, "handleSideGroupClick 2"},
    Row{"group3", key::three, cmd, "handleSideGroupClick 3"},
    Row{"group4", key::four, cmd, "handleSideGroupClick 4"},
    Row{"print", key::p, cmd, "handlePrintAction"},
    Row{"capture", key::s, cmd, "handleScreenCaptureAction"},
    Row{"sticky", key::s, cmd | shf, "stickyClicked"},
    Row{"toolbar", key::t, cmd | opt, "toolbarClicked"},
    Row{"back", key::leftBracket, cmd, "handleBack"},
    Row{"forward", key::rightBracket, cmd, "handleForward"},
    Row{"reload", key::r, cmd, "reloadClicked"},
    Row{"reloadFromOrigin", key::r, cmd | opt, "handleReloadFromOrigin"},
    Row{"bitbucket", key::b, cmd, "switchWebViewsClicked 2"},
    Row{"bard", key::d, cmd, "switchWebViewsClicked 1"},
    Row{"gitlab", key::g, cmd, "switchWebViewsClicked 3"},
    Row{"hemingway", key::h, cmd, "switchWebViewsClicked 4"},
    Row{"jira", key::j, cmd, "switchWebViewsClicked 5"},
    Row{"markdown", key::m, cmd, "switchWebViewsClicked 6"},
    Row{"chat", key::t, cmd, "switchWebViewsClicked 0"},
    Row{"sideBard", key::d, cmd | ctl | shf, "handleWindowBardOnPage", opt},
    Row{"sideBitbucket", key::b, cmd | ctl, "handleWindowBitBucketOnPage"},
    Row{"sideChat", key::t, cmd | ctl, "handleWindowChatOnPage"},
    Row{"sideGitlab", key::g, cmd | ctl, "handleWindowGitLabOnPage"},
    Row{"sideHemingway", key::h, cmd | ctl, "handleWindowHemingwayOnPage"},
    Row{"sideJira", key::j, cmd | ctl, "handleWindowJiraOnPage"},
    Row{"sideMarkdown", key::m, cmd | ctl, "handleWindowMarkdownOnPage"},
    Row{"zoomActual", key::zero, cmd, "handleZoomActual"},
    Row{"zoomIn", key::equal, cmd, "handleZoomIn"},
    Row{"zoomOut", key::minus, cmd, "handleZoomOut"},
    Row{"fullScreen", key::f, cmd | ctl, "handleWindowFullScreen"},
    Row{"up", key::up, cmd | ctl, "handleWindowTaller"},
    Row{"down", key::down, cmd | ctl, "handleWindowShorter"},
    Row{"left", key::left, cmd | ctl, "handleWindowSlimmer"},
    Row{"right", key::right, cmd | ctl, "handleWindowWider"},
    Row{"pageUp", key::pageUp, none, "handlePageUp", cmd | ctl | shf | opt},
    Row{"pageDown", key::pageDown, none, "handlePageDown", cmd | ctl | shf | opt},
    Row{"enter", key::returnKey, none, "handleEnter", cmd | ctl | shf | opt},
    Row{"preferences", key::comma, cmd, "handlePopOverBehaviorUpdate true", ctl | shf | opt},
};

class CombinationTest : public RouterTest, public testing::WithParamInterface<Row> {
 protected:
  CombinationTest() {
    defaults.set(true, UserDefault::hemingwayEnabled);
    defaults.set(true, UserDefault::experimentalEnabled);
  }
};

TEST_P(CombinationTest, ActsAndConsumesTheKey) {
  const auto& row = GetParam();
  EXPECT_FALSE(press(row.code, row.modifiers));
  ASSERT_FALSE(recorder.calls.empty());
  EXPECT_EQ(recorder.calls.front(), row.call);
}

TEST_P(CombinationTest, ActsForNoOtherStateOfEachModifier) {
  const auto& row = GetParam();
  for (const unsigned modifier : {cmd, ctl, shf, opt}) {
    const auto calls = callsOf(row.code, row.modifiers ^ modifier);
    const bool acted = !calls.empty() && calls.front() == row.call;
    EXPECT_EQ(acted, (row.indifferent & modifier) != 0) << "modifier " << modifier;
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CombinationTest, testing::ValuesIn(combinationRows),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(RouterTest, WithoutAdditionalViewsTheirKeysGoOn) {
  for (const int code : {key::b, key::d, key::g, key::h, key::j, key::m, key::t}) {
    EXPECT_TRUE(press(code, cmd));
    EXPECT_TRUE(press(code, cmd | ctl));
  }
  EXPECT_TRUE(press(key::d, cmd | ctl | shf));
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(RouterTest, PlainLettersGoOn) {
  for (const int code : {key::a, key::q, key::one, key::comma, key::left})
    EXPECT_TRUE(press(code, none, "a"));
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(RouterTest, EscapeIsConsumedWithAnyModifiers) {
  for (const unsigned modifiers : {0U, 1U, 3U, 15U}) {
    EXPECT_FALSE(press(key::escape, modifiers));
    EXPECT_FALSE(router->didPressEsc);
  }
  EXPECT_EQ(recorder.calls.size(), 4U);
}

TEST_F(RouterTest, EveryKeyUpIsSwallowed) {
  EXPECT_FALSE(up(key::a, none));
  EXPECT_FALSE(up(0x31, cmd));
}

TEST_F(RouterTest, ModifierChangesGoOn) { EXPECT_TRUE(flags(cmd)); }

TEST_F(RouterTest, QuitWithShiftGoesOn) { EXPECT_TRUE(press(key::q, cmd | shf, "q")); }

TEST_F(RouterTest, PlusWithShiftMatchesNothing) {
  EXPECT_FALSE(press(key::equal, cmd));
  EXPECT_TRUE(press(key::equal, cmd | shf));
}

TEST_F(RouterTest, ReturnGoesOnWithoutScriptingOrWhileTheSearchBarIsOpen) {
  EXPECT_TRUE(press(key::returnKey, cmd, "\r"));
  defaults.set(true, UserDefault::experimentalEnabled);
  recorder.searchBarOpen = true;
  EXPECT_TRUE(press(key::keypadEnter, none, "\r"));
  EXPECT_TRUE(recorder.calls.empty());
  recorder.searchBarOpen = false;
  EXPECT_FALSE(press(key::keypadEnter, none, "\r"));
  EXPECT_EQ(recorder.calls, Calls{"handleEnter"});
}

TEST_F(RouterTest, TheWindowsSizeKeysAreConsumedAndDoNothingInTheOnboarding) {
  defaults.set(rawValue(WebViewSwitchType::onboarding), UserDefault::lastVisibleWebView);
  for (const int code : {key::up, key::down, key::left, key::right}) EXPECT_FALSE(press(code, cmd | ctl));
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(RouterTest, PreferencesNeedAnItemWithoutAMenuAndAreConsumedAnyway) {
  EXPECT_FALSE(press(key::comma, cmd | shf));
  EXPECT_EQ(recorder.calls, (Calls{"handlePopOverBehaviorUpdate true", "preferencesClicked"}));
  statusItem.menu = std::make_shared<platform::NSMenu>();
  EXPECT_FALSE(press(key::comma, cmd));
  EXPECT_EQ(recorder.calls.size(), 2U);
}

TEST_F(RouterTest, DeleteGoesToTheFocusAndOnIfNothingTakesIt) {
  EXPECT_TRUE(press(key::deleteKey, none));
  EXPECT_TRUE(press(key::forwardDelete, none));
  EXPECT_EQ(recorder.calls, (Calls{"deleteBackward:", "deleteForward:"}));
  takesActions = true;
  EXPECT_FALSE(press(key::deleteKey, none));
  EXPECT_FALSE(press(key::forwardDelete, none));
}

TEST_F(RouterTest, ADigitWhoseReleaseFoundNothingToClearStaysDown) {
  flags(cmd);
  down(key::one, cmd, "1");
  flags(none);
  up(key::one, none);
  EXPECT_TRUE(router->didPress1);
  flags(cmd);
  recorder.calls.clear();
  down(key::s, cmd, "s");
  EXPECT_EQ(recorder.calls, Calls{"handleSideGroupClick 1"});
  recorder.calls.clear();
  down(key::f, cmd, "f");
  EXPECT_EQ(recorder.calls, Calls{"handleWindowFindOnPage"});
  up(key::s, cmd);
  EXPECT_FALSE(router->didPress1);
  EXPECT_FALSE(router->didPressS);
}

TEST_F(RouterTest, AKeyUpRepairsModifiersWhoseReleaseWasMissed) {
  flags(cmd | ctl | shf | opt);
  up(key::a, none);
  EXPECT_FALSE(router->didPressCommand || router->didPressControl || router->didPressShift ||
               router->didPressOption);
  flags(cmd | ctl);
  up(key::rightControl, cmd | ctl);
  EXPECT_TRUE(router->didPressCommand);
  EXPECT_FALSE(router->didPressControl);
}

TEST_F(RouterTest, AHeldKeyFiresAgainAtEachRepeat) {
  flags(cmd);
  for (int i = 0; i < 3; ++i) down(key::equal, cmd, "=");
  EXPECT_EQ(recorder.calls.size(), 3U);
}

struct Edit {
  const char* characters;
  const char* selector;
};

class EditTest : public RouterTest, public testing::WithParamInterface<Edit> {};

TEST_P(EditTest, IsOfferedToTheFocusAndConsumedIfTaken) {
  takesActions = true;
  EXPECT_FALSE(press(0x31, cmd, GetParam().characters));
  EXPECT_EQ(recorder.calls, Calls{GetParam().selector});
}

TEST_P(EditTest, GoesOnIfNothingTakesIt) { EXPECT_TRUE(press(0x31, cmd, GetParam().characters)); }

TEST_P(EditTest, NeedsCommandAlone) {
  takesActions = true;
  for (const unsigned modifiers : {0U, cmd | opt, cmd | ctl}) press(0x31, modifiers, GetParam().characters);
  EXPECT_TRUE(recorder.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(Rows, EditTest,
                         testing::Values(Edit{"x", "cut:"}, Edit{"c", "copy:"}, Edit{"V", "paste:"},
                                         Edit{"a", "selectAll:"}));

TEST_F(RouterTest, UndoIsOfferedASecondTimeIfTheFirstFoundNoTaker) {
  press(0x06, cmd, "z");
  EXPECT_EQ(recorder.calls, (Calls{"undo:", "undo:"}));
  recorder.calls.clear();
  takesActions = true;
  press(0x06, cmd, "z");
  EXPECT_EQ(recorder.calls, Calls{"undo:"});
}

TEST_F(RouterTest, CommandShiftZIsRedo) {
  takesActions = true;
  EXPECT_FALSE(press(0x06, cmd | shf, "Z"));
  EXPECT_EQ(recorder.calls, Calls{"redo:"});
}

TEST_F(RouterTest, EditCommandsFollowTheLetterAndOthersThePosition) {
  takesActions = true;
  // Where a US keyboard has I, another layout may have C; where that one has F is F all the same.
  press(0x22, cmd, "c");
  press(key::f, cmd, "u");
  EXPECT_EQ(recorder.calls, (Calls{"copy:", "handleWindowFindOnPage"}));
}

TEST_F(RouterTest, ACommandWhosePressWasMissedCounts) {
  takesActions = true;
  EXPECT_FALSE(down(0x08, cmd, "c"));
  EXPECT_EQ(recorder.calls, Calls{"copy:"});
}

TEST_F(RouterTest, NoKeyReachesTheLog) {
  std::vector<std::string> lines;
  platform::setDebugLogSink([&](std::string_view line) { lines.emplace_back(line); });
  for (const bool isTaken : {false, true}) {
    takesActions = isTaken;
    for (const unsigned modifiers : {0U, 1U, 4U, 5U}) {
      for (int code = 0; code < 0x80; ++code) press(code, modifiers, "a");
      press(0x31, modifiers, " ");
      press(0x29, modifiers, "Ö");
      press(key::q, modifiers, "q");
    }
  }
  EXPECT_TRUE(lines.empty()) << lines.front();
}

TEST_F(RouterTest, AKeyWithoutCharactersIsFatalInBothEditCommands) {
  NSEvent event{.type = NSEvent::EventType::keyDown};
  EXPECT_EXIT(router->isUndoRedo(event), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
  event.modifierFlags = NSEvent::commandFlag;
  EXPECT_EXIT(router->isCutCopyPaste(event), testing::ExitedWithCode(platform::fatalErrorExitCode), "");
}

TEST_F(RouterTest, AnEditCommandRaisesTheCommandFlagAndNeverLowersIt) {
  flags(cmd);
  down(0x31, none, " ");
  EXPECT_TRUE(router->didPressCommand);
  flags(none);
  down(0x31, cmd | shf, " ");
  EXPECT_TRUE(router->didPressCommand);
  EXPECT_FALSE(router->didPressShift) << "the other modifiers are the monitor's";
}

TEST_F(RouterTest, ItsTwoResetsLeaveEachOtherAlone) {
  flags(cmd | ctl | shf | opt);
  down(key::o, none);
  router->resetKeyPressBools();
  EXPECT_FALSE(router->didPressO);
  EXPECT_TRUE(router->didPressCommand && router->didPressControl && router->didPressOption &&
              router->didPressShift);
  down(key::o, none);
  router->modifierKeyBools();
  EXPECT_TRUE(router->didPressO);
  EXPECT_FALSE(router->didPressCommand || router->didPressControl || router->didPressOption ||
               router->didPressShift);
}

TEST_F(RouterTest, HidingThePopoverClosesIt) {
  platform::HeadlessStatusBarButton button;
  popover.show({}, button, platform::NSRectEdge::maxY);
  router->hidePopover();
  EXPECT_FALSE(popover.isShown());
}

TEST_F(RouterTest, AfterItsEndEveryEventGoesOn) {
  router.reset();
  EXPECT_TRUE(flags(cmd));
  EXPECT_TRUE(down(key::q, cmd, "q"));
  EXPECT_TRUE(up(key::q, cmd));
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_F(RouterTest, AgreesWithTheLiteralModelOnAMillionEvents) {
  RouterModel model;
  std::mt19937 random(20260301);
  const auto chance = [&](unsigned n) { return random() % n == 0; };
  constexpr std::array codes = {0x35, 0x12, 0x13, 0x14, 0x15, 0x00, 0x0B, 0x02, 0x03, 0x05, 0x04, 0x26, 0x2E,
                                0x1F, 0x0C, 0x0F, 0x01, 0x11, 0x23, 0x2B, 0x21, 0x1E, 0x1D, 0x18, 0x1B, 0x7E,
                                0x7D, 0x7B, 0x7C, 0x74, 0x79, 0x4C, 0x24, 0x37, 0x36, 0x3A, 0x3D, 0x3B, 0x3E,
                                0x38, 0x3C, 0x33, 0x75, 0x06, 0x07, 0x08, 0x09, 0x31, 0x60};
  const std::array<std::string, 8> characters = {"x", "c", "v", "a", "z", "Z", "q", "й"};
  for (int i = 0; i < repetitions(1'000'000); ++i) {
    if (i % 5000 == 0) {
      model.hemingwayEnabled = chance(2);
      model.experimentalEnabled = chance(2);
      model.isOnboarding = chance(4);
      model.isSearchBarOpen = chance(3);
      model.hasStatusMenu = chance(3);
      model.takesActions = chance(2);
      defaults.set(model.hemingwayEnabled, UserDefault::hemingwayEnabled);
      defaults.set(model.experimentalEnabled, UserDefault::experimentalEnabled);
      defaults.set(rawValue(model.isOnboarding ? WebViewSwitchType::onboarding : WebViewSwitchType::chatgpt),
                   UserDefault::lastVisibleWebView);
      recorder.searchBarOpen = model.isSearchBarOpen;
      statusItem.menu = model.hasStatusMenu ? std::make_shared<platform::NSMenu>() : nullptr;
      takesActions = model.takesActions;
    }
    const int code = codes[random() % codes.size()];
    const unsigned modifiers = chance(2) ? random() % 16 : cmd | (random() % 16 & random());
    const auto& text = characters[random() % characters.size()];
    recorder.calls.clear();
    desktop.app.sentActions.clear();
    model.calls.clear();
    bool hasPassed = true;
    bool shouldPass = true;
    switch (random() % 4) {
      case 0:
        hasPassed = flags(modifiers);
        model.flagsChanged((modifiers & cmd) != 0, (modifiers & ctl) != 0, (modifiers & shf) != 0,
                           (modifiers & opt) != 0);
        break;
      case 1:
        hasPassed = up(code, modifiers);
        shouldPass = false;
        model.keyUp(code, (modifiers & cmd) != 0, (modifiers & ctl) != 0, (modifiers & shf) != 0,
                    (modifiers & opt) != 0);
        break;
      default: {
        hasPassed = down(code, modifiers, text);
        const auto lower = text == "Z" ? std::string("z") : text;
        shouldPass = !model.keyDown(code, (modifiers & cmd) != 0, lower);
      }
    }
    ASSERT_EQ(hasPassed, shouldPass) << "event " << i << " code " << code << " modifiers " << modifiers;
    ASSERT_EQ(recorder.calls, model.calls) << "event " << i << " code " << code << " modifiers " << modifiers;
  }
}

}  // namespace
}  // namespace velkin
