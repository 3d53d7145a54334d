#include "Platform/Gtk/GtkMouseEvents.h"

#include "Platform/NSApplication.h"

namespace platform {

namespace {

std::optional<NSEvent::EventType> typeOf(GdkEvent* event) {
  const auto gdkType = gdk_event_get_event_type(event);
  if (gdkType != GDK_BUTTON_PRESS && gdkType != GDK_BUTTON_RELEASE) return std::nullopt;
  const bool isDown = gdkType == GDK_BUTTON_PRESS;
  switch (gdk_button_event_get_button(event)) {
    case GDK_BUTTON_PRIMARY:
      return isDown ? NSEvent::EventType::leftMouseDown : NSEvent::EventType::leftMouseUp;
    case GDK_BUTTON_SECONDARY:
      return isDown ? NSEvent::EventType::rightMouseDown : NSEvent::EventType::rightMouseUp;
    default:
      return std::nullopt;
  }
}

/// In the coordinates of `window`, also for an event of one of its bubbles, which have surfaces of their own.
bool positionIn(GtkWidget* window, GdkEvent* event, double& x, double& y) {
  GtkNative* native = gtk_native_get_for_surface(gdk_event_get_surface(event));
  if (native == nullptr || !gdk_event_get_position(event, &x, &y)) return false;
  double left = 0;
  double top = 0;
  gtk_native_get_surface_transform(native, &left, &top);
  graphene_point_t place;
  const graphene_point_t inNative = {static_cast<float>(x - left), static_cast<float>(y - top)};
  if (!gtk_widget_compute_point(GTK_WIDGET(native), window, &inNative, &place)) return false;
  x = place.x;
  y = place.y;
  return true;
}

gboolean onMouseEvent(GtkEventControllerLegacy*, GdkEvent* event, gpointer windowPointer) {
  const auto type = typeOf(event);
  if (!type) return FALSE;
  auto* window = static_cast<GtkWidget*>(windowPointer);
  NSEvent button{.type = *type};
  double x = 0;
  double y = 0;
  if (positionIn(window, event, x, y)) {
    button.locationInWindow = {x, gtk_widget_get_height(window) - y};
    button.windowNumber = windowNumber(GTK_WINDOW(window));
  }
  // Not the event that is being handled: commands look at that one to tell how they were called.
  NSApp().filterByMonitors(button);
  return FALSE;
}

}  // namespace

void watchButtons(GtkWindow* window) {
  GtkEventController* controller = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
  g_signal_connect(controller, "event", G_CALLBACK(onMouseEvent), window);
  gtk_widget_add_controller(GTK_WIDGET(window), controller);
}

int windowNumber(GtkWindow* window) {
  static const GQuark quark = g_quark_from_static_string("velkin-window-number");
  static int last = 0;
  const int known = GPOINTER_TO_INT(g_object_get_qdata(G_OBJECT(window), quark));
  if (known != 0) return known;
  g_object_set_qdata(G_OBJECT(window), quark, GINT_TO_POINTER(++last));
  return last;
}

std::optional<NSRect> frameInWindow(GtkWidget* widget) {
  GtkRoot* root = gtk_widget_get_root(widget);
  graphene_rect_t bounds;
  if (root == nullptr || !gtk_widget_get_mapped(widget)) return std::nullopt;
  if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(root), &bounds)) return std::nullopt;
  const double bottom = gtk_widget_get_height(GTK_WIDGET(root)) - bounds.origin.y - bounds.size.height;
  return NSRect{{bounds.origin.x, bottom}, {bounds.size.width, bounds.size.height}};
}

}  // namespace platform
