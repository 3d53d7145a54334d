#pragma once

#include <string_view>

namespace platform {

/// True in a Wayland session, also for a program that uses its X server: that one knows of its own windows
/// only, and neither of other programs' keys nor of where the pointer is.
bool isWaylandSession();

/// True if the session says that it is this desktop, or one made from it ("GNOME" in "ubuntu:GNOME").
bool isDesktop(std::string_view name);

/// True in Cinnamon, which has gone by two names.
bool isCinnamon();

/// True in sway, which leaves it to the user's settings what it is called.
bool isSway();

/// True in GNOME's own shell, and not in the desktops that are made from its other parts only.
bool isGnomeShell();

}  // namespace platform
