#pragma once

#include "Platform/Gtk/HotKeyGrabs.h"

namespace platform {

/// The combination with which the tests of both kinds of grabs begin.
inline constexpr HotKeyCombination ctrlShiftT{0x11, carbon::cmdKey | carbon::shiftKey};

}  // namespace platform
