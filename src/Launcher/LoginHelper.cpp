#include "Launcher/LoginHelper.h"

#include <filesystem>
#include <system_error>

namespace {

constexpr const char* helperIdentifier = "com.tarnvale.VelkinLauncher";
constexpr const char* programIdentifier = "com.tarnvale.Velkin";
constexpr const char* programName = "velkin";
constexpr const char* killLauncher = "killLauncher";
constexpr const char* notificationPath = "/com/tarnvale/Velkin";
constexpr const char* notificationInterface = "com.tarnvale.Velkin.Notifications";
constexpr const char* notificationSignal = "Posted";
constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

constexpr int answerTime = 5000;
constexpr guint nameFlags = 4;  // Not in a queue behind another.
constexpr guint32 isOwner = 1;
/// A program that runs and says nothing is one that doesn't know of helpers.
constexpr guint graceTime = 900;
/// A program that doesn't come up in this time has its own trouble.
constexpr guint patience = 60;

/// The bus's own answer to a question with one text; nullptr without one. The caller owns it.
GVariant* askBus(GDBusConnection* connection, const char* method, GVariant* parameters, const char* type) {
  return g_dbus_connection_call_sync(connection, busName, busPath, busName, method, parameters,
                                     G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, answerTime, nullptr,
                                     nullptr);
}

gboolean quit(gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_REMOVE;
}

}  // namespace

LoginHelper::LoginHelper() : connection_(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {}

LoginHelper::~LoginHelper() {
  g_clear_object(&connection_);
  g_main_loop_unref(loop_);
}

int LoginHelper::run() {
  if (connection_ == nullptr) return startProgram() ? 0 : 1;
  g_dbus_connection_set_exit_on_close(connection_, TRUE);
  if (isProgramRunning()) return 0;
  // Heard before the program can say it: the bus takes one thing after the other.
  listen();
  if (!takeName()) return 0;
  if (!startProgram()) return 1;
  g_timeout_add_seconds(patience, quit, loop_);
  g_main_loop_run(loop_);
  return 0;
}

bool LoginHelper::isProgramRunning() const {
  GVariant* const reply = askBus(connection_, "NameHasOwner", g_variant_new("(s)", programIdentifier), "(b)");
  if (reply == nullptr) return false;
  gboolean isRunning = FALSE;
  g_variant_get(reply, "(b)", &isRunning);
  g_variant_unref(reply);
  return isRunning != FALSE;
}

bool LoginHelper::takeName() const {
  GVariant* const reply =
      askBus(connection_, "RequestName", g_variant_new("(su)", helperIdentifier, nameFlags), "(u)");
  if (reply == nullptr) return true;
  guint32 answer = 0;
  g_variant_get(reply, "(u)", &answer);
  g_variant_unref(reply);
  return answer == isOwner;
}

void LoginHelper::listen() {
  g_dbus_connection_signal_subscribe(
      connection_, nullptr, notificationInterface, notificationSignal, notificationPath, killLauncher,
      G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
         gpointer self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ss)"))) return;
        const char* object = nullptr;
        g_variant_get(parameters, "(&s&s)", nullptr, &object);
        if (g_str_equal(object, programIdentifier)) static_cast<LoginHelper*>(self)->end();
      },
      this, nullptr);
  g_bus_watch_name_on_connection(
      connection_, programIdentifier, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer self) {
        g_timeout_add(graceTime, quit, static_cast<LoginHelper*>(self)->loop_);
      },
      nullptr, this, nullptr);
}

bool LoginHelper::startProgram() {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const std::string program = (folder / programName).string();
  // A copy, since the interface takes what it could change.
  std::string argument = program;
  char* arguments[] = {argument.data(), nullptr};
  GPid child = 0;
  GError* failure = nullptr;
  if (g_spawn_async(nullptr, arguments, nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr, nullptr, &child,
                    &failure) == FALSE) {
    g_printerr("VelkinLauncher: %s\n", failure->message);
    g_error_free(failure);
    return false;
  }
  // A program that ended says nothing any more.
  g_child_watch_add(
      child,
      [](GPid pid, int, gpointer loop) {
        g_spawn_close_pid(pid);
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
      },
      loop_);
  return true;
}
