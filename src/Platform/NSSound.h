#pragma once

#include "Platform/NSWorkspace.h"

namespace platform {

/// Main thread.
struct NSSound {
  static void beep() { NSWorkspace::shared().beep(); }
};

}  // namespace platform
