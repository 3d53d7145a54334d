#include "Keyboard/GlobalShortcutChanges.h"

#include "Keyboard/KeyboardShortcuts.h"

namespace velkin {

GlobalShortcutChanges::GlobalShortcutChanges()
    : token_(platform::NSNotificationCenter::defaultCenter().addObserver(
          KeyboardShortcuts::shortcutByNameDidChange,
          [this](const platform::NSNotification&) { notifyObservers(); })) {}

}  // namespace velkin
