#include "Platform/Gtk/WindowSystem.h"

#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <cmath>

namespace platform {

std::string WindowSystem::connectorOf(const NSScreen& screen) const {
  auto* display = gdk_display_get_default();
  if (display == nullptr) return {};
  const auto corner = cornerOf(screen);
  if (!corner) return {};
  GListModel* monitors = gdk_display_get_monitors(display);
  for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i)));
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor.get(), &area);
    const char* name = gdk_monitor_get_connector(monitor.get());
    if (name != nullptr && area.x == std::lround(corner->x) && area.y == std::lround(corner->y)) return name;
  }
  return {};
}

void presentWindow(GtkWindow* window) {
  const auto* activation = presentActivation();
  if (activation == nullptr) {
    gtk_window_present(window);
    return;
  }
  if (!activation->token.empty()) gtk_window_set_startup_id(window, activation->token.c_str());
  WindowSystem::present().present(window, *activation);
}

}  // namespace platform
