#include "Platform/Gtk/WaylandWindowSystem.h"

#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SwayDesktop.h"

#include <utility>

#include <unistd.h>

namespace platform {

bool WaylandWindowSystem::placesWindows() const { return sway_ != nullptr && sway_->layout(); }

std::vector<PixelRect> WaylandWindowSystem::monitors(std::size_t& primary) const {
  primary = 0;
  if (!placesWindows()) return {};
  primary = sway_->layout()->focused;
  return sway_->layout()->monitors;
}

std::vector<Strut> WaylandWindowSystem::struts() const {
  return placesWindows() ? sway_->layout()->struts : std::vector<Strut>();
}

std::optional<std::size_t> WaylandWindowSystem::mainMonitor() const {
  if (!placesWindows()) return std::nullopt;
  return sway_->layout()->focused;
}

void WaylandWindowSystem::setIsDialog(GtkWindow* window, bool isDialog) const {
  // A window of a fixed size floats where others are tiled.
  gtk_window_set_resizable(window, !isDialog);
}

void WaylandWindowSystem::placeAtIcon(GtkWindow* window, Placing placing) const {
  const std::string title = gtk_window_get_title(window);
  const auto criteria = criteriaFor(std::nullopt, getpid(), title);
  if (sway_ != nullptr && criteria) {
    sway_->place(*criteria, title, std::move(placing));
  } else {
    placing.done();
  }
}

std::optional<PixelPoint> WaylandWindowSystem::iconPlace(std::optional<PixelPoint> told, bool) const {
  return sway_ != nullptr ? sway_->icon(told) : told;
}

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

void WaylandWindowSystem::present(GtkWindow* window, const Activation&) const {
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
