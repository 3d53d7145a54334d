#include "gtk/MockShortcutsPortal.h"

#include "Platform/Gtk/PortalRequest.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace platform {

namespace {

constexpr const char* introspection = R"xml(<node>
<interface name="org.freedesktop.host.portal.Registry">
  <method name="Register"><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/></method>
</interface>
<interface name="org.freedesktop.portal.GlobalShortcuts">
  <method name="CreateSession"><arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>
  <method name="BindShortcuts"><arg type="o" direction="in"/><arg type="a(sa{sv})" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>
  <method name="ListShortcuts"><arg type="o" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="o" direction="out"/></method>
  <method name="ConfigureShortcuts"><arg type="o" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{sv}" direction="in"/></method>
  <signal name="Activated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{sv}"/></signal>
  <signal name="Deactivated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{sv}"/></signal>
  <property name="version" type="u" access="read"/>
</interface>
<interface name="org.freedesktop.portal.Session"><method name="Close"/></interface>
</node>)xml";

std::string lookUp(GVariant* dictionary, const char* key) {
  const GVariantPtr value(g_variant_lookup_value(dictionary, key, G_VARIANT_TYPE_STRING));
  return value ? g_variant_get_string(value.get(), nullptr) : "";
}

std::string pathOf(const char* kind, const char* sender, const std::string& token) {
  std::string name = sender + 1;
  std::replace(name.begin(), name.end(), '.', '_');
  return std::string(portalPath) + "/" + kind + "/" + name + "/" + token;
}

}  // namespace

MockShortcutsPortal::MockShortcutsPortal(Options options) : options_(std::move(options)) {
  connection_ = GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      g_getenv("DBUS_SESSION_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  static const GDBusInterfaceVTable table = {
      [](GDBusConnection*, const char* sender, const char*, const char* interface, const char* method,
         GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
        static_cast<MockShortcutsPortal*>(self)->handle(sender, interface, method, parameters, invocation);
      },
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GError**, gpointer self) {
        return g_variant_new_uint32(static_cast<MockShortcutsPortal*>(self)->options_.version);
      },
      nullptr,
      {}};
  auto* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
  if (options_.hasRegistry) {
    objects_.push_back(g_dbus_connection_register_object(connection_.get(), portalPath, node->interfaces[0],
                                                         &table, this, nullptr, nullptr));
  }
  if (options_.hasShortcuts) {
    objects_.push_back(g_dbus_connection_register_object(connection_.get(), portalPath, node->interfaces[1],
                                                         &table, this, nullptr, nullptr));
  }
  g_dbus_node_info_unref(node);
  name_ = g_bus_own_name_on_connection(connection_.get(), "org.freedesktop.portal.Desktop",
                                       G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
}

MockShortcutsPortal::~MockShortcutsPortal() {
  g_bus_unown_name(name_);
  for (const auto object : objects_) g_dbus_connection_unregister_object(connection_.get(), object);
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

GVariant* MockShortcutsPortal::shortcutList(const std::vector<std::string>& names) const {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE("a(sa{sv})"));
  for (const auto& name : names) {
    GVariantBuilder details;
    g_variant_builder_init(&details, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&details, "{sv}", "trigger_description", g_variant_new_string("Press <Some>Key"));
    g_variant_builder_add(&list, "(s@a{sv})", name.c_str(), g_variant_builder_end(&details));
  }
  return g_variant_builder_end(&list);
}

void MockShortcutsPortal::handle(const char* sender, const char* interface, const char* method,
                                 GVariant* parameters, GDBusMethodInvocation* invocation) {
  const std::string_view called = method;
  if (called == "Register") {
    const char* id = nullptr;
    g_variant_get_child(parameters, 0, "&s", &id);
    calls.push_back(std::string("Register ") + id);
    g_dbus_method_invocation_return_value(invocation, nullptr);
    return;
  }
  if (called == "Close") {
    calls.emplace_back("Close");
    g_dbus_method_invocation_return_value(invocation, nullptr);
    return;
  }
  if (called == "ConfigureShortcuts") {
    const char* configured = nullptr;
    g_variant_get_child(parameters, 0, "&o", &configured);
    EXPECT_EQ(configured, session);
    calls.emplace_back("ConfigureShortcuts");
    g_dbus_method_invocation_return_value(invocation, nullptr);
    return;
  }
  EXPECT_STREQ(interface, "org.freedesktop.portal.GlobalShortcuts");
  const GVariantPtr options(g_variant_get_child_value(parameters, g_variant_n_children(parameters) - 1));
  const auto request = pathOf("request", sender, lookUp(options.get(), "handle_token"));
  GVariantBuilder results;
  g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
  guint32 answer = 0;
  if (called == "CreateSession") {
    calls.emplace_back("CreateSession");
    const GVariantPtr offered(
        g_variant_lookup_value(options.get(), "shortcuts", G_VARIANT_TYPE("a(sa{sv})")));
    for (gsize i = 0; options_.takesThemAtCreation && offered && i < g_variant_n_children(offered.get());
         ++i) {
      const char* name = nullptr;
      GVariant* raw = nullptr;
      g_variant_get_child(offered.get(), i, "(&s@a{sv})", &name, &raw);
      const GVariantPtr details(raw);
      options_.remembered.emplace_back(name);
      descriptionAndTrigger[name] = {lookUp(raw, "description"), lookUp(raw, "preferred_trigger")};
    }
    session = pathOf("session", sender, lookUp(options.get(), "session_handle_token"));
    auto* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
    static const GDBusInterfaceVTable table = {
        [](GDBusConnection*, const char* from, const char*, const char* name, const char* member,
           GVariant* given, GDBusMethodInvocation* asked, gpointer self) {
          static_cast<MockShortcutsPortal*>(self)->handle(from, name, member, given, asked);
        },
        nullptr,
        nullptr,
        {}};
    objects_.push_back(g_dbus_connection_register_object(
        connection_.get(), session.c_str(), node->interfaces[2], &table, this, nullptr, nullptr));
    g_dbus_node_info_unref(node);
    g_variant_builder_add(&results, "{sv}", "session_handle", g_variant_new_string(session.c_str()));
  } else {
    const char* given = nullptr;
    g_variant_get_child(parameters, 0, "&o", &given);
    EXPECT_EQ(given, session);
    if (called == "ListShortcuts") {
      calls.emplace_back("ListShortcuts");
      g_variant_builder_add(&results, "{sv}", "shortcuts", shortcutList(options_.remembered));
    } else {
      const GVariantPtr list(g_variant_get_child_value(parameters, 1));
      std::vector<std::string> names;
      descriptionAndTrigger.clear();
      for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
        const char* name = nullptr;
        GVariant* raw = nullptr;
        g_variant_get_child(list.get(), i, "(&s@a{sv})", &name, &raw);
        const GVariantPtr details(raw);
        names.emplace_back(name);
        descriptionAndTrigger[name] = {lookUp(raw, "description"), lookUp(raw, "preferred_trigger")};
      }
      std::string line = "BindShortcuts";
      for (const auto& name : names) line += " " + name;
      calls.push_back(line);
      answer = options_.answer;
      g_variant_builder_add(&results, "{sv}", "shortcuts",
                            shortcutList(bindsNothing ? std::vector<std::string>() : names));
    }
  }
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", request.c_str()));
  g_dbus_connection_emit_signal(connection_.get(), sender, request.c_str(), "org.freedesktop.portal.Request",
                                "Response",
                                g_variant_new("(u@a{sv})", answer, g_variant_builder_end(&results)), nullptr);
}

void MockShortcutsPortal::pressInSession(const std::string& otherSession, const std::string& name) {
  const auto own = std::exchange(session, otherSession);
  press(name);
  session = own;
}

void MockShortcutsPortal::signal(const char* member, const std::string& name, const std::string& token) {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  if (!token.empty())
    g_variant_builder_add(&options, "{sv}", "activation_token", g_variant_new_string(token.c_str()));
  g_dbus_connection_emit_signal(connection_.get(), nullptr, portalPath,
                                "org.freedesktop.portal.GlobalShortcuts", member,
                                g_variant_new("(ost@a{sv})", session.c_str(), name.c_str(), guint64{4711},
                                              g_variant_builder_end(&options)),
                                nullptr);
}

}  // namespace platform
