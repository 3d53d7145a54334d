#include "Platform/Gtk/WaylandWindowSystem.h"
#include "Platform/Gtk/X11Desktop.h"
#include "Platform/Gtk/X11WindowSystem.h"

namespace platform {

WindowSystem& WindowSystem::present() {
  static X11WindowSystem x11;
  static WaylandWindowSystem wayland;
  if (X11Desktop::isAvailable()) return x11;
  return wayland;
}

}  // namespace platform
