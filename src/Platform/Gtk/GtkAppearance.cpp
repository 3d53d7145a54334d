#include "Platform/Gtk/GtkAppearance.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PortalRequest.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include <adwaita.h>

namespace platform {

namespace {

constexpr int schemeTime = 100;
constexpr guint32 preferDark = 1;
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearanceGroup = "org.freedesktop.appearance";
constexpr const char* schemeKey = "color-scheme";

/// Whatever it is boxed in; nothing for what is no number.
std::optional<bool> isDarkIn(GVariant* boxed) {
  GVariantPtr value(g_variant_ref(boxed));
  while (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_VARIANT))
    value = GVariantPtr(g_variant_get_variant(value.get()));
  if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)) return std::nullopt;
  return g_variant_get_uint32(value.get()) == preferDark;
}

/// What the desktop's portal says; nothing where no portal runs.
std::optional<bool> askPortal(GDBusConnection* connection) {
  if (connection == nullptr) return std::nullopt;
  // A portal that isn't running yet is not worth waiting for here: the toolkit asks it again later.
  const GVariantPtr reply(
      g_dbus_connection_call_sync(connection, portalName, portalPath, settingsInterface, "Read",
                                  g_variant_new("(ss)", appearanceGroup, schemeKey), G_VARIANT_TYPE("(v)"),
                                  G_DBUS_CALL_FLAGS_NO_AUTO_START, schemeTime, nullptr, nullptr));
  if (!reply) return std::nullopt;
  const GVariantPtr value(g_variant_get_child_value(reply.get(), 0));
  return isDarkIn(value.get());
}

std::optional<bool> askSettings() {
  GSettingsSchemaSource* source = g_settings_schema_source_get_default();
  if (source == nullptr) return std::nullopt;
  GSettingsSchema* schema = g_settings_schema_source_lookup(source, "org.gnome.desktop.interface", TRUE);
  if (schema == nullptr) return std::nullopt;
  const bool hasKey = g_settings_schema_has_key(schema, "color-scheme");
  g_settings_schema_unref(schema);
  if (!hasKey) return std::nullopt;
  const auto settings = GObjectPtr<GSettings>::adopt(g_settings_new("org.gnome.desktop.interface"));
  const GStringPtr scheme(g_settings_get_string(settings.get(), "color-scheme"));
  return std::string_view(scheme.get()) == "prefer-dark";
}

}  // namespace

GtkAppearance::~GtkAppearance() {
  g_cancellable_cancel(cancellable_.get());
  if (darkHandler_ != 0) g_signal_handler_disconnect(adw_style_manager_get_default(), darkHandler_);
  if (watch_ != 0) g_bus_unwatch_name(watch_);
  if (changes_ != 0) g_dbus_connection_signal_unsubscribe(connection_.get(), changes_);
}

void GtkAppearance::readFromDesktop(GDBusConnection* connection) {
  auto answer = askPortal(connection);
  isTold_ = answer.has_value();
  connection_ = GObjectPtr<GDBusConnection>::retain(connection);
  if (!answer) answer = askSettings();
  isDark_ = answer.value_or(false);
}

void GtkAppearance::followToolkit(Events events) {
  events_ = std::move(events);
  update();
  darkHandler_ = g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                                          G_CALLBACK(+[](GtkAppearance* self) { self->update(); }), this);
  if (!isTold_ && connection_) awaitPortal();
}

void GtkAppearance::update() {
  const bool isDark = adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE;
  if (isDark_.exchange(isDark) != isDark && events_.changed) events_.changed();
}

void GtkAppearance::awaitPortal() {
  // The toolkit asks when it starts, and never again where nobody answered.
  watch_ = g_bus_watch_name_on_connection(
      connection_.get(), portalName, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer self) {
        static_cast<GtkAppearance*>(self)->askLatePortal();
      },
      nullptr, this, nullptr);
}

void GtkAppearance::askLatePortal() {
  if (isTold_) return;
  g_dbus_connection_call(
      connection_.get(), portalName, portalPath, settingsInterface, "Read",
      g_variant_new("(ss)", appearanceGroup, schemeKey), G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, -1,
      cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        // Also where this has gone.
        if (!reply) return;
        const GVariantPtr value(g_variant_get_child_value(reply.get(), 0));
        if (const auto isDark = isDarkIn(value.get()))
          static_cast<GtkAppearance*>(data)->latePortalSaid(*isDark);
      },
      this);
}

void GtkAppearance::latePortalSaid(bool isDark) {
  auto* style = adw_style_manager_get_default();
  if (!adw_style_manager_get_system_supports_color_schemes(style) || isDark != isDark_.load()) {
    // The toolkit asked too early, and doesn't follow this portal.
    adw_style_manager_set_color_scheme(style,
                                       isDark ? ADW_COLOR_SCHEME_PREFER_DARK : ADW_COLOR_SCHEME_DEFAULT);
  }
  update();
  if (changes_ == 0) {
    changes_ = g_dbus_connection_signal_subscribe(
        connection_.get(), portalName, settingsInterface, "SettingChanged", portalPath, appearanceGroup,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* told,
           gpointer self) {
          if (!g_variant_is_of_type(told, G_VARIANT_TYPE("(ssv)"))) return;
          const char* key = nullptr;
          g_variant_get_child(told, 1, "&s", &key);
          const GVariantPtr value(g_variant_get_child_value(told, 2));
          const auto dark = std::string_view(key) == schemeKey ? isDarkIn(value.get()) : std::nullopt;
          if (dark) static_cast<GtkAppearance*>(self)->latePortalSaid(*dark);
        },
        this, nullptr);
  }
  if (!std::exchange(isTold_, true) && events_.firstTold) events_.firstTold();
}

}  // namespace platform
