#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkAppearance.h"
#include "gtk/GtkFixture.h"

#include <optional>

#include <adwaita.h>

namespace platform {
namespace {

/// The part of the desktop's portal that says whether it is dark, on a connection of its own.
class MockSettingsPortal {
 public:
  explicit MockSettingsPortal(guint32 scheme)
      : scheme_(scheme),
        address_(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)),
        connection_(GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
            address_.get(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                 G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr))) {
    constexpr const char* introspection = R"(<node><interface name='org.freedesktop.portal.Settings'>
      <method name='Read'><arg type='s' direction='in'/><arg type='s' direction='in'/>
      <arg type='v' direction='out'/></method>
      <signal name='SettingChanged'><arg type='s'/><arg type='s'/><arg type='v'/></signal></interface></node>)";
    auto* node = g_dbus_node_info_new_for_xml(introspection, nullptr);
    static const GDBusInterfaceVTable table = {
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
           GDBusMethodInvocation* invocation, gpointer self) {
          g_dbus_method_invocation_return_value(
              invocation, g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(
                                                   static_cast<MockSettingsPortal*>(self)->scheme_))));
        },
        nullptr,
        nullptr,
        {}};
    object_ = g_dbus_connection_register_object(connection_.get(), path, node->interfaces[0], &table, this,
                                                nullptr, nullptr);
    g_dbus_node_info_unref(node);
    name_ = g_bus_own_name_on_connection(connection_.get(), "org.freedesktop.portal.Desktop",
                                         G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
  }
  ~MockSettingsPortal() {
    g_bus_unown_name(name_);
    g_dbus_connection_unregister_object(connection_.get(), object_);
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  }
  void change(guint32 scheme) {
    scheme_ = scheme;
    g_dbus_connection_emit_signal(
        connection_.get(), nullptr, path, "org.freedesktop.portal.Settings", "SettingChanged",
        g_variant_new("(ssv)", "org.freedesktop.appearance", "color-scheme", g_variant_new_uint32(scheme)),
        nullptr);
  }

 private:
  static constexpr const char* path = "/org/freedesktop/portal/desktop";
  guint32 scheme_;
  GStringPtr address_;
  GObjectPtr<GDBusConnection> connection_;
  guint object_ = 0;
  guint name_ = 0;
};

class GtkAppearanceTest : public GtkFixture {
 protected:
  GtkAppearanceTest()
      : bus(GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))) {}
  ~GtkAppearanceTest() override {
    appearance.reset();
    portal.reset();
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_DEFAULT);
  }
  void launch() {
    appearance.emplace();
    appearance->readFromDesktop(bus.get());
    appearance->followToolkit({[this] { ++changes; }, [this] { ++firstWords; }});
  }

  GObjectPtr<GDBusConnection> bus;
  std::optional<MockSettingsPortal> portal;
  std::optional<GtkAppearance> appearance;
  int changes = 0;
  int firstWords = 0;
};

TEST_F(GtkAppearanceTest, APortalThatComesUpLateCorrectsTheLaunchOnce) {
  launch();
  EXPECT_FALSE(appearance->isDark());
  portal.emplace(1);
  ASSERT_TRUE(wait([&] { return firstWords == 1; }));
  EXPECT_TRUE(appearance->isDark());
  EXPECT_TRUE(adw_style_manager_get_dark(adw_style_manager_get_default())) << "the windows too";
  portal->change(2);
  ASSERT_TRUE(wait([&] { return !appearance->isDark(); }));
  EXPECT_EQ(firstWords, 1) << "what comes later is the user's change";
  EXPECT_EQ(changes, 2);
}

TEST_F(GtkAppearanceTest, ALateWordIsTheFirstOneAlsoWhereItChangesNothing) {
  launch();
  portal.emplace(2);
  ASSERT_TRUE(wait([&] { return firstWords == 1; }));
  EXPECT_FALSE(appearance->isDark());
  EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace platform
