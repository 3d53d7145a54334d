#include "Platform/Gtk/LoginItem.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/PortalRequest.h"
#include "Platform/Gtk/ProgramFolders.h"
#include "Platform/LogText.h"
#include "Platform/WholeFile.h"
#include "platform/BundleInfo.h"

#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr mode_t entryMode = 0644;
constexpr const char* group = "Desktop Entry";

void logLoginItem(const std::string& message) { debugLog("LoginItem", "setEnabled(_:_:)", message); }

fs::path entryOf(const std::string& identifier) {
  return fs::path(g_get_user_config_dir()) / "autostart" / (identifier + ".desktop");
}

bool writeEntry(const std::string& identifier) {
  const auto program = ProgramFolders::programs() / identifier.substr(identifier.rfind('.') + 1);
  if (::access(program.c_str(), X_OK) != 0) {
    logLoginItem("The login helper isn't installed beside the program");
    return false;
  }
  const auto entry = entryOf(identifier);
  makePrivateFolder(entry.parent_path());
  const auto written = replaceFile(entry, LoginItem::entryFor(program.string()), entryMode);
  if (!written) logLoginItem("The autostart entry can't be written: " + forLog(written.error().why));
  return written.has_value();
}

bool removeEntry(const std::string& identifier) {
  std::error_code error;
  fs::remove(entryOf(identifier), error);
  if (error) logLoginItem("The autostart entry can't be removed: " + forLog(error.message()));
  return !error;
}

}  // namespace

bool LoginItem::setEnabled(const std::string& identifier, bool isEnabled, GDBusConnection* connection) {
  if (isSandboxed()) {
    askPortal(isEnabled, connection);
    return connection != nullptr;
  }
  return isEnabled ? writeEntry(identifier) : removeEntry(identifier);
}

std::string LoginItem::entryFor(const std::string& program) {
  GKeyFile* const file = g_key_file_new();
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_NAME, bundle::name);
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_COMMENT, "Puts Velkin's icon into the tray");
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_EXEC, quoted(program).c_str());
  // Once the program has been removed, desktops pass the entry over.
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, program.c_str());
  g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_ICON, bundle::identifier);
  g_key_file_set_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_NO_DISPLAY, TRUE);
  g_key_file_set_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_STARTUP_NOTIFY, FALSE);
  const GStringPtr text(g_key_file_to_data(file, nullptr, nullptr));
  g_key_file_unref(file);
  return text.get();
}

std::string LoginItem::quoted(const std::string& path) {
  constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-+,:@";
  std::string text;
  for (const char c : path) {
    if (c == '"' || c == '`' || c == '$' || c == '\\') text += '\\';
    // A field code otherwise.
    if (c == '%') text += '%';
    text += c;
  }
  return path.find_first_not_of(plain) == std::string::npos ? text : "\"" + text + "\"";
}

bool LoginItem::isSandboxed() { return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) != FALSE; }

void LoginItem::askPortal(bool isEnabled, GDBusConnection* connection) {
  if (connection == nullptr) return logLoginItem("There is no D-Bus session to ask the desktop by");
  const auto parameters = [isEnabled](const char* token) {
    // The program itself: a helper that ends would end the sandbox with what it has started.
    const char* const command[] = {"velkin", nullptr};
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token));
    g_variant_builder_add(&options, "{sv}", "reason",
                          g_variant_new_string("Velkin's icon is in the tray after each login."));
    g_variant_builder_add(&options, "{sv}", "autostart", g_variant_new_boolean(isEnabled));
    g_variant_builder_add(&options, "{sv}", "commandline", g_variant_new_strv(command, -1));
    g_variant_builder_add(&options, "{sv}", "dbus-activatable", g_variant_new_boolean(FALSE));
    return g_variant_new("(s@a{sv})", "", g_variant_builder_end(&options));
  };
  callPortal(connection, "org.freedesktop.portal.Background", "RequestBackground", parameters,
             [isEnabled](const PortalAnswer& answer) {
               if (!answer) return logLoginItem("The desktop didn't: " + forLog(answer.error()));
               gboolean starts = FALSE;
               g_variant_lookup(answer->get(), "autostart", "b", &starts);
               if ((starts != FALSE) != isEnabled) logLoginItem("The desktop has it another way");
             });
}

}  // namespace platform
