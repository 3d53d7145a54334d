#include "Platform/Gtk/GtkApplication.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/ProgramFolders.h"
#include "Platform/NSUserDefaults.h"
#include "Platform/Platform.h"
#include "platform/BundleInfo.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <sys/file.h>
#include <unistd.h>

namespace platform {

void GtkApplicationHost::perform(GSimpleAction* action, GVariant* parameter, gpointer host) {
  auto* self = static_cast<GtkApplicationHost*>(host);
  self->whenStarted(
      [self, name = std::string(g_action_get_name(G_ACTION(action))),
       argument = std::string(parameter == nullptr ? "" : g_variant_get_string(parameter, nullptr))] {
        // What the desktop binds to a key has the right of a key: its window may take the keyboard.
        const ActivationScope scope({});
        self->delegate_->applicationPerformAction(name, argument);
      });
}

void GtkApplicationHost::whenStarted(std::function<void()> work) {
  if (isStarting_) {
    waitingForStart_.push_back(std::move(work));
  } else {
    work();
  }
}

void GtkApplicationHost::startHasEnded() {
  if (!std::exchange(isStarting_, false)) return;
  for (const auto& work : std::exchange(waitingForStart_, {})) work();
}

void GtkApplicationHost::reopen() {
  // Where the pointer is says nothing of where the icon is.
  const ActivationScope scope({});
  delegate_->applicationDidReopen();
}

GtkApplicationHost::GtkApplicationHost()
    : application_(GObjectPtr<GApplication>::adopt(
          g_application_new(bundle::identifier, G_APPLICATION_DEFAULT_FLAGS))) {
  g_signal_connect_swapped(application_.get(), "startup",
                           G_CALLBACK(+[](GtkApplicationHost* self) { self->launched(); }), this);
  g_signal_connect_swapped(application_.get(), "activate",
                           G_CALLBACK(+[](GtkApplicationHost* self) { self->activated(); }), this);
  // For the desktop entry's menu, and for whoever binds a key to them in the desktop's settings.
  constexpr GActionEntry actions[] = {
      {"open",
       [](GSimpleAction*, GVariant*, gpointer self) {
         auto* host = static_cast<GtkApplicationHost*>(self);
         host->whenStarted([host] { host->reopen(); });
       }},
      {"quit",
       [](GSimpleAction*, GVariant*, gpointer self) { static_cast<GtkApplicationHost*>(self)->quit(); }},
      {"toggle-popover", perform},
      {"toggle-search", perform},
      {"show-view", perform, "s"},
  };
  g_action_map_add_action_entries(G_ACTION_MAP(application_.get()), actions, G_N_ELEMENTS(actions), this);
}

GtkApplicationHost::~GtkApplicationHost() { g_signal_handlers_disconnect_by_data(application_.get(), this); }

int GtkApplicationHost::run(NSApplicationDelegate& delegate) {
  delegate_ = &delegate;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    g_unix_signal_add(
        signal,
        [](gpointer self) -> gboolean {
          static_cast<GtkApplicationHost*>(self)->quit();
          return G_SOURCE_REMOVE;
        },
        this);
  }
  return g_application_run(application_.get(), 0, nullptr);
}

void GtkApplicationHost::quit() {
  delegate_->applicationWillTerminate();
  exit(0);
}

void GtkApplicationHost::exit(int code) {
  std::fflush(nullptr);
  if (auto* platform = Platform::installed()) platform->standardUserDefaults().storeWhatIsHeldBack();
  // No destructors: the settings are on disk, and the web processes end with their connection.
  std::_Exit(code);
}

bool GtkApplicationHost::sendAction(std::string_view selector) {
  return sendEditAction(std::string(selector).c_str());
}

bool GtkApplicationHost::isTextBeingEdited() const { return isTextFocused(); }

void GtkApplicationHost::setTakesReservedKeys(bool takes) {
  GListModel* windows = gtk_window_get_toplevels();
  for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
    const auto window = GObjectPtr<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, i)));
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window.get()));
    if (surface == nullptr || !GDK_IS_TOPLEVEL(surface)) continue;
    if (!takes) {
      gdk_toplevel_restore_system_shortcuts(GDK_TOPLEVEL(surface));
    } else if (gtk_window_is_active(window.get())) {
      gdk_toplevel_inhibit_system_shortcuts(GDK_TOPLEVEL(surface), nullptr);
    }
  }
}

GDBusConnection* GtkApplicationHost::connection() const {
  return g_application_get_dbus_connection(application_.get());
}

bool GtkApplicationHost::becomeTheOnlyProcessWithoutBus() {
  std::error_code error;
  const auto folder = ProgramFolders::userState();
  std::filesystem::create_directories(folder, error);
  const int file = ::open((folder / "running").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return true;
  if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
    char text[32] = {};
    const auto length = ::read(file, text, sizeof(text) - 1);
    const int other = length > 0 ? std::atoi(text) : 0;
    if (other > 1) ::kill(other, SIGUSR2);
    return false;
  }
  // The file stays open: its lock is the sign that this process lives.
  const auto pid = std::to_string(::getpid());
  if (::ftruncate(file, 0) != 0 || ::write(file, pid.data(), pid.size()) < 0) {
    debugLog("GtkApplication", "becomeTheOnlyProcessWithoutBus()", "The process number can't be written");
  }
  g_unix_signal_add(
      SIGUSR2,
      [](gpointer self) -> gboolean {
        static_cast<GtkApplicationHost*>(self)->reopen();
        return G_SOURCE_CONTINUE;
      },
      this);
  return true;
}

void GtkApplicationHost::launched() {
  if (connection() == nullptr) {
    debugLog("GtkApplication", "launched()", "There is no D-Bus session: no tray icon, and no notifications");
    // The web engine takes the address at its word and ends the program when it can't reach it.
    g_unsetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!becomeTheOnlyProcessWithoutBus()) exit(0);
  }
  g_application_hold(application_.get());
  if (willLaunch) willLaunch();
  delegate_->applicationDidFinishLaunching();
}

void GtkApplicationHost::activated() {
  // The first activation is the start itself, and comes twice where the bus made the start: from the
  // program's own, and from what the bus has kept for it.
  if (!isStarting_) reopen();
}

}  // namespace platform
