// A bare hidden toolkit window with one web view that has loaded the address given. A call of Toggle over the
// bus shows and hides it.
#include <gtk/gtk.h>
#include <webkit/webkit.h>

namespace {

constexpr const char* introspection =
    R"xml(<node><interface name="com.tarnvale.Baseline"><method name="Toggle"/></interface></node>)xml";

void toggle(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
            GDBusMethodInvocation* invocation, gpointer window) {
  g_dbus_method_invocation_return_value(invocation, nullptr);
  if (gtk_widget_get_visible(GTK_WIDGET(window))) {
    gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
  } else {
    gtk_window_present(GTK_WINDOW(window));
  }
}

}  // namespace

int main(int, char** argv) {
  gtk_init();
  GtkWidget* window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 600, 600);
  GtkWidget* view = webkit_web_view_new();
  // As the program does where pictures are computed by the processor.
  webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view)),
                                                   WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  gtk_window_set_child(GTK_WINDOW(window), view);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), argv[1]);
  GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(introspection, nullptr);
  static const GDBusInterfaceVTable table = {toggle, nullptr, nullptr, {}};
  g_dbus_connection_register_object(bus, "/Baseline", info->interfaces[0], &table, window, nullptr, nullptr);
  g_bus_own_name_on_connection(bus, "com.tarnvale.Baseline", G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                               nullptr, nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
