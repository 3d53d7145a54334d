#pragma once

#include "Keyboard/QKKeyboardShortcutHelperDelegate.h"
#include "Platform/NSEvent.h"
#include "Platform/NSPopover.h"

namespace velkin {

/// Keys that every program on this desktop has, beside those that are the program's own: Alt with Left and
/// Right goes back and forward, Ctrl with Backspace and Delete takes a word. Made behind the router, so that
/// it sees a key first. Main thread.
class DesktopKeys {
 public:
  /// Both outlive this.
  DesktopKeys(QKKeyboardShortcutHelperDelegate& delegate, const platform::NSPopover& popover);

 private:
  /// True if the key was for this.
  bool keyDown(const platform::NSEvent& event);

  QKKeyboardShortcutHelperDelegate& delegate_;
  const platform::NSPopover& popover_;
  platform::Connection monitor_;
};

}  // namespace velkin
