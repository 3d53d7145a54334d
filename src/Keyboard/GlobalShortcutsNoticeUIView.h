#pragma once

#include "Platform/CarbonEvents.h"
#include "Platform/View/View.h"

namespace velkin {

/// Why there are no global shortcuts on this desktop, and what the user can do instead.
struct GlobalShortcutsNoticeUIView {
  platform::HotKeyNotice notice;

  platform::View body() const;
};

/// Opens the desktop's own settings of keys; nothing where no way there is known.
platform::View desktopKeySettingsButton();

/// The notice, or nothing where the desktop hands out shortcuts.
platform::View globalShortcutsNotice();

}  // namespace velkin
