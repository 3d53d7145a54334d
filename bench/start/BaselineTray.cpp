// The least that a tray program can be: it links what the program links, and registers an icon.
#include <string>

#include <gio/gio.h>
#include <unistd.h>

namespace {

constexpr const char* introspection = R"xml(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/><property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/><property name="Status" type="s" access="read"/>
  <property name="IconName" type="s" access="read"/><property name="Menu" type="o" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
</interface></node>)xml";

GVariant* readProperty(GDBusConnection*, const char*, const char*, const char*, const char* property,
                       GError**, gpointer) {
  const std::string name = property;
  if (name == "Menu") return g_variant_new_object_path("/MenuBar");
  if (name == "ItemIsMenu") return g_variant_new_boolean(FALSE);
  return g_variant_new_string(name == "Category" ? "ApplicationStatus"
                              : name == "Status" ? "Active"
                                                 : "baseline");
}

}  // namespace

int main() {
  GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  GDBusNodeInfo* info = g_dbus_node_info_new_for_xml(introspection, nullptr);
  static const GDBusInterfaceVTable table = {nullptr, readProperty, nullptr, {}};
  g_dbus_connection_register_object(bus, "/StatusNotifierItem", info->interfaces[0], &table, nullptr, nullptr,
                                    nullptr);
  const std::string name = "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1";
  g_bus_own_name_on_connection(bus, name.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr,
                               nullptr);
  g_dbus_connection_call(bus, "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                         "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem",
                         g_variant_new("(s)", name.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                         nullptr, nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
