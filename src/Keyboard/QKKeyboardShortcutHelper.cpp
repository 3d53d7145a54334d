#include "Keyboard/QKKeyboardShortcutHelper.h"

#include "Keyboard/VirtualKeyCode.h"
#include "Platform/FatalError.h"
#include "Platform/NSApplication.h"
#include "Values/WebViewSwitchType.h"
#include "extenstions/LetterCase.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace velkin {

using platform::NSApp;
using platform::NSEvent;
using Router = QKKeyboardShortcutHelper;
using Delegate = QKKeyboardShortcutHelperDelegate;
using Flag = bool Router::*;

namespace {

/// What an ordinary key raises when it goes down.
struct RecordedKey {
  key::Code code;
  Flag flag;
};

constexpr std::array recordedKeys = {
    RecordedKey{key::one, &Router::didPress1},
    RecordedKey{key::two, &Router::didPress2},
    RecordedKey{key::three, &Router::didPress3},
    RecordedKey{key::four, &Router::didPress4},
    RecordedKey{key::a, &Router::didPressA},
    RecordedKey{key::b, &Router::didPressB},
    RecordedKey{key::d, &Router::didPressD},
    RecordedKey{key::f, &Router::didPressF},
    RecordedKey{key::g, &Router::didPressG},
    RecordedKey{key::h, &Router::didPressH},
    RecordedKey{key::j, &Router::didPressJ},
    RecordedKey{key::m, &Router::didPressM},
    RecordedKey{key::o, &Router::didPressO},
    RecordedKey{key::q, &Router::didPressQ},
    RecordedKey{key::r, &Router::didPressR},
    RecordedKey{key::s, &Router::didPressS},
    RecordedKey{key::t, &Router::didPressT},
    RecordedKey{key::p, &Router::didPressP},
    RecordedKey{key::comma, &Router::didPressComma},
    RecordedKey{key::leftBracket, &Router::didPressLeftBracket},
    RecordedKey{key::rightBracket, &Router::didPressRightBracket},
    RecordedKey{key::zero, &Router::didPressZero},
    RecordedKey{key::equal, &Router::didPressPlus},
    RecordedKey{key::minus, &Router::didPressMinus},
    RecordedKey{key::up, &Router::didPressUp},
    RecordedKey{key::down, &Router::didPressDown},
    RecordedKey{key::left, &Router::didPressLeft},
    RecordedKey{key::right, &Router::didPressRight},
    RecordedKey{key::pageUp, &Router::didPressPgUp},
    RecordedKey{key::pageDown, &Router::didPressPgDn},
};

struct ModifierKey {
  key::Code left;
  key::Code right;
  std::uint32_t bit;
  Flag flag;
};

constexpr ModifierKey commandKey{key::command, key::rightCommand, NSEvent::commandFlag,
                                 &Router::didPressCommand};
constexpr ModifierKey optionKey{key::option, key::rightOption, NSEvent::optionFlag, &Router::didPressOption};
constexpr ModifierKey controlKey{key::control, key::rightControl, NSEvent::controlFlag,
                                 &Router::didPressControl};
constexpr ModifierKey shiftKey{key::shift, key::rightShift, NSEvent::shiftFlag, &Router::didPressShift};

/// A key-up clears the keys' flags while one of these is up. The digits, the brackets and M are not among
/// them: theirs wait for the next key-up that finds one.
constexpr std::array clearingFlags = {
    &Router::didPressCommand, &Router::didPressShift, &Router::didPressComma, &Router::didPressA,
    &Router::didPressF,       &Router::didPressO,     &Router::didPressP,     &Router::didPressR,
    &Router::didPressS,       &Router::didPressQ,     &Router::didPressZero,  &Router::didPressPlus,
    &Router::didPressMinus,   &Router::didPressUp,    &Router::didPressDown,  &Router::didPressLeft,
    &Router::didPressRight,   &Router::didPressB,     &Router::didPressD,     &Router::didPressG,
    &Router::didPressH,       &Router::didPressJ,     &Router::didPressT,     &Router::didPressPgUp,
    &Router::didPressPgDn,    &Router::didPressEnter, &Router::didPressEsc};

constexpr std::array keyFlags = {
    &Router::didPress1,     &Router::didPress2,           &Router::didPress3,
    &Router::didPress4,     &Router::didPressComma,       &Router::didPressA,
    &Router::didPressB,     &Router::didPressD,           &Router::didPressF,
    &Router::didPressG,     &Router::didPressH,           &Router::didPressJ,
    &Router::didPressP,     &Router::didPressM,           &Router::didPressO,
    &Router::didPressQ,     &Router::didPressR,           &Router::didPressS,
    &Router::didPressT,     &Router::didPressLeftBracket, &Router::didPressRightBracket,
    &Router::didPressZero,  &Router::didPressPlus,        &Router::didPressMinus,
    &Router::didPressUp,    &Router::didPressDown,        &Router::didPressLeft,
    &Router::didPressRight, &Router::didPressPgUp,        &Router::didPressPgDn,
    &Router::didPressEnter, &Router::didPressEsc};

/// A row of the commands: the first whose modifiers and key are down acts.
struct Combination {
  bool (*modifiers)(const Router&);
  Flag key;
  void (*act)(Router&);
};

constexpr bool (*commandOnly)(const Router&) = [](const Router& r) { return r.isCommandOnly(); };
constexpr bool (*commandShift)(const Router&) = [](const Router& r) { return r.isCommandShiftCombo(); };
constexpr bool (*commandOption)(const Router&) = [](const Router& r) { return r.isCommandOptionCombo(); };
constexpr bool (*commandControl)(const Router&) = [](const Router& r) { return r.isCommandControlCombo(); };
constexpr bool (*additionalView)(const Router&) = [](const Router& r) { return r.isEasterEggView(); };
constexpr bool (*sideBar)(const Router&) = [](const Router& r) { return r.isSideBar(); };
constexpr bool (*bardSideBar)(const Router&) = [](const Router& r) {
  return r.didPressShift && r.didPressCommand && r.didPressControl && r.defaults.hemingwayEnabled();
};
constexpr bool (*anyModifiers)(const Router&) = [](const Router&) { return true; };
constexpr bool (*commandAtLeast)(const Router&) = [](const Router& r) { return r.didPressCommand; };

template <void (Delegate::*operation)()>
void call(Router& router) {
  (router.delegate->*operation)();
}

template <void (MenuHelperDelegate::*operation)()>
void callMenu(Router& router) {
  (router.menuDelegate->*operation)();
}

template <int number>
void group(Router& router) {
  router.delegate->handleSideGroupClick(number);
}

template <WebViewSwitchType type>
void switchTo(Router& router) {
  router.delegate->switchWebViewsClicked(rawValue(type));
}

/// The onboarding has its size and keeps it.
template <void (Delegate::*operation)()>
void resize(Router& router) {
  if (router.defaults.lastVisibleWebView() != WebViewSwitchType::onboarding) (router.delegate->*operation)();
}

void quit(Router& router) { router.menuDelegate->quitClicked(); }

void preferences(Router& router) {
  if (router.menuBarItem->menu) return;
  router.delegate->handlePopOverBehaviorUpdate(true);
  router.menuDelegate->preferencesClicked();
}

using enum WebViewSwitchType;

constexpr std::array combinations = {
    Combination{commandOnly, &Router::didPressQ, quit},
    Combination{commandShift, &Router::didPressA, callMenu<&MenuHelperDelegate::appearanceClicked>},
    Combination{commandOnly, &Router::didPressF, call<&Delegate::handleWindowFindOnPage>},
    Combination{commandOnly, &Router::didPress1, group<1>},
    Combination{commandOnly, &Router::didPress2, group<2>},
    Combination{commandOnly, &Router::didPress3, group<3>},
    Combination{commandOnly, &Router::didPress4, group<4>},
    Combination{commandOnly, &Router::didPressP, call<&Delegate::handlePrintAction>},
    Combination{commandOnly, &Router::didPressS, call<&Delegate::handleScreenCaptureAction>},
    Combination{commandShift, &Router::didPressS, callMenu<&MenuHelperDelegate::stickyClicked>},
    Combination{commandOption, &Router::didPressT, callMenu<&MenuHelperDelegate::toolbarClicked>},
    Combination{commandOnly, &Router::didPressLeftBracket, call<&Delegate::handleBack>},
    Combination{commandOnly, &Router::didPressRightBracket, call<&Delegate::handleForward>},
    Combination{commandOnly, &Router::didPressR, callMenu<&MenuHelperDelegate::reloadClicked>},
    Combination{commandOption, &Router::didPressR, call<&Delegate::handleReloadFromOrigin>},
    Combination{additionalView, &Router::didPressB, switchTo<bitbucket>},
    Combination{additionalView, &Router::didPressD, switchTo<bard>},
    Combination{additionalView, &Router::didPressG, switchTo<gitlab>},
    Combination{additionalView, &Router::didPressH, switchTo<hemingway>},
    Combination{additionalView, &Router::didPressJ, switchTo<jira>},
    Combination{additionalView, &Router::didPressM, switchTo<markdown>},
    Combination{additionalView, &Router::didPressT, switchTo<chatgpt>},
    Combination{bardSideBar, &Router::didPressD, call<&Delegate::handleWindowBardOnPage>},
    Combination{sideBar, &Router::didPressB, call<&Delegate::handleWindowBitBucketOnPage>},
    Combination{sideBar, &Router::didPressT, call<&Delegate::handleWindowChatOnPage>},
    Combination{sideBar, &Router::didPressG, call<&Delegate::handleWindowGitLabOnPage>},
    Combination{sideBar, &Router::didPressH, call<&Delegate::handleWindowHemingwayOnPage>},
    Combination{sideBar, &Router::didPressJ, call<&Delegate::handleWindowJiraOnPage>},
    Combination{sideBar, &Router::didPressM, call<&Delegate::handleWindowMarkdownOnPage>},
    Combination{commandOnly, &Router::didPressZero, call<&Delegate::handleZoomActual>},
    Combination{commandOnly, &Router::didPressPlus, call<&Delegate::handleZoomIn>},
    Combination{commandOnly, &Router::didPressMinus, call<&Delegate::handleZoomOut>},
    Combination{commandControl, &Router::didPressF, call<&Delegate::handleWindowFullScreen>},
    Combination{commandControl, &Router::didPressUp, resize<&Delegate::handleWindowTaller>},
    Combination{commandControl, &Router::didPressDown, resize<&Delegate::handleWindowShorter>},
    Combination{commandControl, &Router::didPressLeft, resize<&Delegate::handleWindowSlimmer>},
    Combination{commandControl, &Router::didPressRight, resize<&Delegate::handleWindowWider>},
    Combination{anyModifiers, &Router::didPressPgUp, call<&Delegate::handlePageUp>},
    Combination{anyModifiers, &Router::didPressPgDn, call<&Delegate::handlePageDown>},
    Combination{anyModifiers, &Router::didPressEnter, call<&Delegate::handleEnter>},
    Combination{commandAtLeast, &Router::didPressComma, preferences},
};

struct EditCommand {
  std::string_view characters;
  std::string_view selector;
};

constexpr std::array editCommands = {EditCommand{"x", "cut:"}, EditCommand{"c", "copy:"},
                                     EditCommand{"v", "paste:"}, EditCommand{"a", "selectAll:"},
                                     EditCommand{"z", "undo:"}};

}  // namespace

QKKeyboardShortcutHelper::QKKeyboardShortcutHelper(Delegate& keyDelegate, platform::NSPopover& mainPopover,
                                                   platform::NSStatusItem& statusItem,
                                                   MenuHelperDelegate& menuTarget)
    : delegate(&keyDelegate), menuBarItem(&statusItem), menuDelegate(&menuTarget), popover(&mainPopover) {
  const auto watch = [this](NSEvent::EventType type, NSEvent::Monitor handle) {
    monitors_.push_back(NSEvent::addLocalMonitorForEvents(NSEvent::mask(type), std::move(handle)));
  };
  using Passed = std::optional<NSEvent>;
  watch(NSEvent::EventType::flagsChanged,
        [this](const NSEvent& event) -> Passed { return modifierKey(event); });
  watch(NSEvent::EventType::keyDown, [this](const NSEvent& event) -> Passed {
    if (keyDown(event)) return std::nullopt;
    return event;
  });
  // Pages see keys go down and never up: no page can tell how long a key was held.
  watch(NSEvent::EventType::keyUp, [this](const NSEvent& event) -> Passed {
    keyUp(event);
    return std::nullopt;
  });
}

NSEvent QKKeyboardShortcutHelper::modifierKey(const NSEvent& event) {
  for (const auto& modifier : {commandKey, controlKey, shiftKey, optionKey}) {
    this->*modifier.flag = (event.modifierFlags & modifier.bit) != 0;
  }
  return event;
}

void QKKeyboardShortcutHelper::resetKeyPressBools() {
  for (const auto flag : keyFlags) this->*flag = false;
}

void QKKeyboardShortcutHelper::modifierKeyBools() {
  for (const auto& modifier : {commandKey, controlKey, shiftKey, optionKey}) this->*modifier.flag = false;
}

void QKKeyboardShortcutHelper::hidePopover() { popover->performClose(); }

bool QKKeyboardShortcutHelper::isCommandOnly() const {
  return didPressCommand && !didPressOption && !didPressControl && !didPressShift;
}

bool QKKeyboardShortcutHelper::isCommandShiftCombo() const {
  return didPressCommand && !didPressOption && !didPressControl && didPressShift;
}

bool QKKeyboardShortcutHelper::isCommandOptionCombo() const {
  return didPressCommand && didPressOption && !didPressControl && !didPressShift;
}

bool QKKeyboardShortcutHelper::isCommandControlCombo() const {
  return didPressCommand && !didPressOption && didPressControl && !didPressShift;
}

bool QKKeyboardShortcutHelper::isEasterEggView() const {
  return isCommandOnly() && defaults.hemingwayEnabled();
}

bool QKKeyboardShortcutHelper::isSideBar() const {
  return isCommandControlCombo() && defaults.hemingwayEnabled();
}

void QKKeyboardShortcutHelper::keyUp(const NSEvent& event) {
  // Any key-up repairs a modifier whose release was missed while another program had the keyboard.
  for (const auto& modifier : {shiftKey, controlKey, commandKey, optionKey}) {
    const bool isItself = event.keyCode == modifier.left || event.keyCode == modifier.right;
    if (isItself || (event.modifierFlags & modifier.bit) == 0) this->*modifier.flag = false;
  }
  if (std::any_of(clearingFlags.begin(), clearingFlags.end(), [this](Flag flag) { return this->*flag; })) {
    resetKeyPressBools();
  }
}

bool QKKeyboardShortcutHelper::keyDown(const NSEvent& event) {
  if (isCutCopyPaste(event) || isUndoRedo(event)) return true;
  switch (record(event)) {
    case Recorded::consumed:
      return true;
    case Recorded::passedOn:
      return false;
    case Recorded::goOn:
      break;
  }
  return runCombination();
}

Router::Recorded QKKeyboardShortcutHelper::record(const NSEvent& event) {
  const auto code = event.keyCode;
  if (code == key::escape) {
    delegate->handleEsc();
    return Recorded::consumed;
  }
  for (const auto& recorded : recordedKeys) {
    if (recorded.code != code) continue;
    this->*recorded.flag = true;
    return Recorded::goOn;
  }
  const bool isReturn = code == key::keypadEnter || code == key::returnKey;
  if (isReturn && defaults.experimentalEnabled() && !delegate->isSearchBarOpen()) {
    didPressEnter = true;
    return Recorded::goOn;
  }
  for (const auto& modifier : {commandKey, optionKey, controlKey, shiftKey}) {
    if (code != modifier.left && code != modifier.right) continue;
    this->*modifier.flag = true;
    return Recorded::goOn;
  }
  const auto sends = [](std::string_view selector) {
    return NSApp().sendAction(selector) ? Recorded::consumed : Recorded::goOn;
  };
  if (code == key::deleteKey) return sends("deleteBackward:");
  if (code == key::forwardDelete) return sends("deleteForward:");
  platform::unwrap(event.charactersIgnoringModifiers);
  return Recorded::passedOn;
}

bool QKKeyboardShortcutHelper::runCombination() {
  for (const auto& combination : combinations) {
    if (!(this->*combination.key) || !combination.modifiers(*this)) continue;
    combination.act(*this);
    return true;
  }
  return false;
}

bool QKKeyboardShortcutHelper::isCutCopyPaste(const NSEvent& event) {
  // A Command that went down while another program had the keyboard.
  if ((event.modifierFlags & NSEvent::commandFlag) != 0) didPressCommand = true;
  if (!isCommandOnly()) return false;
  const auto characters = lowercased(platform::unwrap(event.charactersIgnoringModifiers));
  for (const auto& command : editCommands) {
    if (command.characters != characters) continue;
    return NSApp().sendAction(command.selector);
  }
  return false;
}

bool QKKeyboardShortcutHelper::isUndoRedo(const NSEvent& event) const {
  const std::string_view characters = platform::unwrap(event.charactersIgnoringModifiers);
  if (!isCommandOnly() && !isCommandShiftCombo()) return false;
  if (lowercased(characters) != "z") return false;
  return NSApp().sendAction(didPressShift ? "redo:" : "undo:");
}

}  // namespace velkin
