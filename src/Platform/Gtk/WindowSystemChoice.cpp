#include "Platform/Gtk/SessionKind.h"
#include "Platform/Gtk/SwayDesktop.h"
#include "Platform/Gtk/WaylandWindowSystem.h"
#include "Platform/Gtk/X11Desktop.h"
#include "Platform/Gtk/X11WindowSystem.h"

namespace platform {

WindowSystem& WindowSystem::present() {
  static SwayDesktop* const sway = [] {
    auto* found = isWaylandSession() ? SwayDesktop::present() : nullptr;
    // The first opening's size goes by it.
    if (found != nullptr) found->refresh();
    return found;
  }();
  static X11WindowSystem x11(sway);
  static WaylandWindowSystem wayland(sway);
  if (X11Desktop::isAvailable()) return x11;
  return wayland;
}

}  // namespace platform
