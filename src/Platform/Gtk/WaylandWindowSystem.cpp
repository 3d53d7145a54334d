#include "Platform/Gtk/WaylandWindowSystem.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/HotKeyActivation.h"

namespace platform {

std::vector<NSScreen> WaylandWindowSystem::screens() const {
  std::vector<NSScreen> screens;
  GListModel* monitors = gdk_display_get_monitors(gdk_display_get_default());
  for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i)));
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor.get(), &area);
    const NSRect frame{{0, 0}, {static_cast<double>(area.width), static_cast<double>(area.height)}};
    screens.push_back({frame, frame});
  }
  return screens;
}

void WaylandWindowSystem::present(GtkWindow* window, const HotKeyActivation&) const {
  // By the desktop's token, which the window has by now.
  gtk_window_present(window);
}

void WaylandWindowSystem::nameProgram(const char* identifier) const {
  // Windows are known by the name of the program's desktop entry, and the toolkit gives it this one.
  g_set_prgname(identifier);
}

std::optional<NSPoint> WaylandWindowSystem::cornerOf(const NSScreen& screen) const {
  return NSPoint{screen.frame.minX(), 0};
}

}  // namespace platform
