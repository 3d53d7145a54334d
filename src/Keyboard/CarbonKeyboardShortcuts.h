#pragma once

#include "Keyboard/Shortcut.h"
#include "Platform/CarbonEvents.h"

#include <cstdint>
#include <functional>
#include <vector>

/// The hot keys that are registered with the desktop, and what comes of them: hot key events, or raw key
/// events while a menu of the program is open. Main thread.
namespace velkin::CarbonKeyboardShortcuts {

using KeyboardShortcuts::Shortcut;
using Action = std::function<void(const Shortcut&)>;

inline constexpr std::uint32_t hotKeySignature = platform::fourCharCode("QKHK");

/// Asks the desktop for the combination. One that it refuses leaves nothing behind; nobody is told.
void registerShortcut(const Shortcut& shortcut, Action onKeyDown, Action onKeyUp);
void unregister(const Shortcut& shortcut);
void unregisterAll();
/// The desktop has given it to us, also while it is let go for a time.
bool isRegistered(const Shortcut& shortcut);
/// Adapts to `KeyboardShortcuts::isEnabled` and `isMenuOpen`.
void updateEventHandler();
/// What comes from the desktop.
platform::OSStatus handleEvent(const platform::CarbonEvent* event);

/// The combinations that the desktop says it keeps to itself.
std::vector<Shortcut> system();

/// Lets go of everything: registrations, handler, numbers.
void shutDown();

}  // namespace velkin::CarbonKeyboardShortcuts
