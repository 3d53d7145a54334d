#include "gtk/MockRequestPortal.h"

#include "Platform/Gtk/PortalRequest.h"

#include <algorithm>
#include <memory>

namespace platform {

MockRequestPortal::MockRequestPortal(const std::string& interface, const std::string& method) {
  connection_ = GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      g_getenv("DBUS_SESSION_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  static const GDBusInterfaceVTable table = {
      [](GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* parameters,
         GDBusMethodInvocation* invocation,
         gpointer self) { static_cast<MockRequestPortal*>(self)->handle(sender, parameters, invocation); },
      nullptr,
      nullptr,
      {}};
  const auto xml = "<node><interface name=\"" + interface + "\"><method name=\"" + method +
                   R"("><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>)" +
                   R"(<arg type="o" direction="out"/></method></interface></node>)";
  auto* node = g_dbus_node_info_new_for_xml(xml.c_str(), nullptr);
  object_ = g_dbus_connection_register_object(connection_.get(), portalPath, node->interfaces[0], &table,
                                              this, nullptr, nullptr);
  g_dbus_node_info_unref(node);
  // At once: the next call must find it.
  const GVariantPtr reply(g_dbus_connection_call_sync(connection_.get(), "org.freedesktop.DBus",
                                                      "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                                      "RequestName", g_variant_new("(su)", portalName, 4U),
                                                      nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

MockRequestPortal::~MockRequestPortal() {
  g_dbus_connection_unregister_object(connection_.get(), object_);
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

void MockRequestPortal::handle(const char* sender, GVariant* parameters, GDBusMethodInvocation* invocation) {
  const GStringPtr text(g_variant_print(parameters, FALSE));
  calls.emplace_back(text.get());
  const GVariantPtr options(g_variant_get_child_value(parameters, 1));
  const char* token = "none";
  g_variant_lookup(options.get(), "handle_token", "&s", &token);
  std::string caller = sender + 1;
  std::replace(caller.begin(), caller.end(), '.', '_');
  const auto path = std::string(portalPath) + "/request/" + (usesOwnPath ? "own/one" : caller + "/" + token);
  GVariantBuilder told;
  g_variant_builder_init(&told, G_VARIANT_TYPE_VARDICT);
  for (const auto& [key, value] : results)
    g_variant_builder_add(&told, "{sv}", key.c_str(), g_variant_new_string(value.c_str()));
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", path.c_str()));
  struct Later {
    GObjectPtr<GDBusConnection> connection;
    std::string sender, path;
    GVariant* body;
  };
  // After the caller has read where the request is.
  auto* const later =
      std::make_unique<Later>(
          Later{connection_, sender, path,
                g_variant_ref_sink(g_variant_new("(u@a{sv})", answer, g_variant_builder_end(&told)))})
          .release();
  g_timeout_add(
      usesOwnPath ? 200 : 0,
      [](gpointer data) -> gboolean {
        const std::unique_ptr<Later> due(static_cast<Later*>(data));
        g_dbus_connection_emit_signal(due->connection.get(), due->sender.c_str(), due->path.c_str(),
                                      "org.freedesktop.portal.Request", "Response", due->body, nullptr);
        g_variant_unref(due->body);
        return G_SOURCE_REMOVE;
      },
      later);
}

}  // namespace platform
