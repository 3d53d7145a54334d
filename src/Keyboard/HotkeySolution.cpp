#include "Keyboard/HotkeySolution.h"

#include "Platform/CarbonEvents.h"
#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/NSEvent.h"

#include <array>

namespace velkin {

using namespace platform;

namespace {

constexpr EventHotKeyID hotKeyID{fourCharCode("swat"), 1};
constexpr std::uint32_t keyG = 0x05;
constexpr std::uint32_t keyP = 0x23;
constexpr std::uint32_t alphaLock = 0x400;

void ask(std::uint32_t keyCode, const char* logLine, void (HotkeySolutionDelegate::*action)()) {
  constexpr std::array types = {EventTypeSpec{kEventClassKeyboard, kEventHotKeyPressed}};
  auto& target = GetEventDispatcherTarget();
  static_cast<void>(target.InstallEventHandler(
      [logLine, action](const CarbonEvent*) {
        // The event is the press, whatever the line says.
        debugLog(logLine);
        if (HotkeySolution::delegate != nullptr) (HotkeySolution::delegate->*action)();
        return noErr;
      },
      types));
  if (!target.RegisterEventHotKey({keyCode, carbon::cmdKey | carbon::shiftKey}, hotKeyID))
    assertionFailure("status == noErr");
}

}  // namespace

HotkeySolutionDelegate* HotkeySolution::delegate = nullptr;

std::uint32_t HotkeySolution::getCarbonFlagsFromCocoaFlags(ModifierFlags cocoaFlags) noexcept {
  return carbon(cocoaFlags) | ((cocoaFlags & NSEvent::capsLockFlag) != 0 ? alphaLock : 0);
}

void HotkeySolution::registerHotKey() {
  ask(keyG, "Command + G Released!", &HotkeySolutionDelegate::didUseGlobalHotKeys);
}

void HotkeySolution::registerSearchBarHotKey() {
  ask(keyP, "Command + P Released!", &HotkeySolutionDelegate::handleSearchBarDelegate);
}

}  // namespace velkin
