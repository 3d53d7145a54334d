#pragma once

namespace platform {

/// True in a Wayland session, also for a program that uses its X server: that one knows of its own windows
/// only, and neither of other programs' keys nor of where the pointer is.
bool isWaylandSession();

}  // namespace platform
