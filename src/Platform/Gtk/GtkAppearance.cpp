#include "Platform/Gtk/GtkAppearance.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include <adwaita.h>

namespace platform {

namespace {

constexpr int answerTime = 100;
constexpr guint32 preferDark = 1;

/// What the desktop's portal says; nothing where no portal runs.
std::optional<bool> askPortal(GDBusConnection* connection) {
  if (connection == nullptr) return std::nullopt;
  // A portal that isn't running yet is not worth waiting for here: the toolkit asks it again later.
  const GVariantPtr reply(g_dbus_connection_call_sync(
      connection, "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
      "org.freedesktop.portal.Settings", "Read",
      g_variant_new("(ss)", "org.freedesktop.appearance", "color-scheme"), G_VARIANT_TYPE("(v)"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, answerTime, nullptr, nullptr));
  if (!reply) return std::nullopt;
  GVariant* outer = nullptr;
  g_variant_get(reply.get(), "(v)", &outer);
  const GVariantPtr boxed(outer);
  const GVariantPtr value(g_variant_is_of_type(outer, G_VARIANT_TYPE_VARIANT) ? g_variant_get_variant(outer)
                                                                              : g_variant_ref(outer));
  if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)) return std::nullopt;
  return g_variant_get_uint32(value.get()) == preferDark;
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

void GtkAppearance::readFromDesktop(GDBusConnection* connection) {
  auto answer = askPortal(connection);
  if (!answer) answer = askSettings();
  isDark_ = answer.value_or(false);
}

void GtkAppearance::followToolkit(std::function<void()> changed) {
  changed_ = std::move(changed);
  update();
  g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                           G_CALLBACK(+[](GtkAppearance* self) { self->update(); }), this);
}

void GtkAppearance::update() {
  const bool isDark = adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE;
  if (isDark_.exchange(isDark) != isDark && changed_) changed_();
}

}  // namespace platform
