#include "Platform/Gtk/GtkDesktop.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/DesktopPictures.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/LogText.h"
#include "Platform/NSAppearance.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include <gdk/gdk.h>

namespace platform {

namespace {

constexpr const char* notificationPath = "/com/tarnvale/Velkin";
constexpr const char* notificationInterface = "com.tarnvale.Velkin.Notifications";
constexpr const char* notificationSignal = "Posted";
constexpr const char* noticeService = "org.freedesktop.Notifications";
constexpr const char* noticePath = "/org/freedesktop/Notifications";
constexpr const char* ourPrefix = "com.tarnvale.";
constexpr int answerTime = 500;
/// A file manager may have to start first.
constexpr int fileManagerTime = 25000;

int numberOf(const NSScreen& screen) {
  const auto all = NSScreen::screens();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const NSScreen& one) { return one.frame == screen.frame; });
  return found == all.end() ? 0 : static_cast<int>(found - all.begin());
}

}  // namespace

bool GtkWorkspace::open(const URL& url) {
  GError* raw = nullptr;
  const bool isOpened =
      g_app_info_launch_default_for_uri(url.absoluteString().c_str(), nullptr, &raw) != FALSE;
  const GErrorPtr error(raw);
  if (error)
    debugLog("GtkDesktop", "open(_:)", addressForLog(url.absoluteString()) + ": " + forLog(error->message));
  return isOpened;
}

std::vector<NSRunningApplication> GtkWorkspace::runningApplications() {
  std::vector<NSRunningApplication> running;
  auto* connection = connection_();
  if (connection == nullptr) return running;
  const GVariantPtr reply(g_dbus_connection_call_sync(
      connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames",
      nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, answerTime, nullptr, nullptr));
  if (!reply) return running;
  GVariantIter* names = nullptr;
  g_variant_get(reply.get(), "(as)", &names);
  const char* name = nullptr;
  while (g_variant_iter_next(names, "&s", &name)) {
    if (g_str_has_prefix(name, ourPrefix)) running.push_back({name});
  }
  g_variant_iter_free(names);
  return running;
}

GtkWorkspace::~GtkWorkspace() {
  if (noticeSubscription_ != 0) g_dbus_connection_signal_unsubscribe(connection_(), noticeSubscription_);
}

void GtkWorkspace::listenToNotices(GDBusConnection* connection) {
  if (noticeSubscription_ != 0) return;
  noticeSubscription_ = g_dbus_connection_signal_subscribe(
      connection, noticeService, noticeService, "ActionInvoked", noticePath, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
         gpointer self) {
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(us)"))) return;
        std::uint32_t id = 0;
        g_variant_get(parameters, "(u&s)", &id, nullptr);
        auto& actions = static_cast<GtkWorkspace*>(self)->noticeActions_;
        const auto found = actions.find(id);
        if (found == actions.end()) return;
        // Once: the notice goes with the click.
        const auto action = std::move(found->second);
        actions.erase(found);
        if (action) action();
      },
      this, nullptr);
}

void GtkWorkspace::deliver(NSUserNotification notification) {
  auto* connection = connection_();
  if (connection == nullptr) return;
  listenToNotices(connection);
  GVariantBuilder actions;
  g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
  if (!notification.actionButtonTitle.empty()) {
    for (const char* name : {"default", "open"}) {
      // LXQt has a button for the click on the notice itself too.
      if (isDesktop("LXQt") && std::string_view(name) != "default") continue;
      g_variant_builder_add(&actions, "s", name);
      g_variant_builder_add(&actions, "s", notification.actionButtonTitle.c_str());
    }
  }
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string("com.tarnvale.Velkin"));
  struct Pending {
    Alive::Watch alive;
    GtkWorkspace* workspace;
    std::function<void()> action;
  };
  constexpr int asLongAsTheDesktopLikes = -1;
  auto pending = std::make_unique<Pending>(Pending{isAlive_.watch(), this, std::move(notification.action)});
  g_dbus_connection_call(
      connection, noticeService, noticePath, noticeService, "Notify",
      g_variant_new("(susssasa{sv}i)", "Velkin", 0U, "com.tarnvale.Velkin", notification.title.c_str(),
                    notification.informativeText.c_str(), &actions, &hints, asLongAsTheDesktopLikes),
      G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Pending> asked(static_cast<Pending*>(data));
        GError* raw = nullptr;
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raw));
        const GErrorPtr error(raw);
        if (!reply) {
          debugLog("GtkDesktop", "deliver(_:)", "The desktop shows no notices");
          return;
        }
        std::uint32_t id = 0;
        g_variant_get(reply.get(), "(u)", &id);
        if (asked->alive && asked->action) asked->workspace->noticeActions_[id] = std::move(asked->action);
      },
      pending.release());
}

void GtkWorkspace::beep() {
  if (auto* display = gdk_display_get_default()) gdk_display_beep(display);
}

std::optional<std::string> GtkWorkspace::desktopImageURLForScreen(const NSScreen& screen) {
  return desktopPicture(
      {WindowSystem::present().connectorOf(screen), numberOf(screen), NSAppearance::isDarkNow()});
}

void GtkWorkspace::activateFileViewerSelecting(const std::string& path) {
  const auto openFolder = [folder = std::filesystem::path(path).parent_path().string()] {
    const GStringPtr uri(g_filename_to_uri(folder.c_str(), nullptr, nullptr));
    GError* raw = nullptr;
    if (uri) g_app_info_launch_default_for_uri(uri.get(), nullptr, &raw);
    const GErrorPtr error(raw);
    if (error) debugLog("GtkDesktop", "activateFileViewerSelecting(_:)", forLog(error->message));
  };
  const GStringPtr uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
  auto* connection = connection_();
  if (connection == nullptr || !uri) return openFolder();
  GVariantBuilder files;
  g_variant_builder_init(&files, G_VARIANT_TYPE("as"));
  g_variant_builder_add(&files, "s", uri.get());
  g_dbus_connection_call(
      connection, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
      "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(ass)", &files, ""), nullptr,
      G_DBUS_CALL_FLAGS_NONE, fileManagerTime, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::function<void()>> otherwise(static_cast<std::function<void()>*>(data));
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
        if (!reply) (*otherwise)();
      },
      std::make_unique<std::function<void()>>(openFolder).release());
}

BusNotificationCenter::BusNotificationCenter(std::function<GDBusConnection*()> connection)
    : connection_(std::move(connection)) {}

BusNotificationCenter::~BusNotificationCenter() {
  if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(connection_(), subscription_);
}

void BusNotificationCenter::post(const std::string& name, const std::string& object) {
  auto* connection = connection_();
  if (connection == nullptr) {
    deliver(name, object);
    return;
  }
  // Comes back to this process's own observers by the bus, as it does to everybody's.
  g_dbus_connection_emit_signal(connection, nullptr, notificationPath, notificationInterface,
                                notificationSignal, g_variant_new("(ss)", name.c_str(), object.c_str()),
                                nullptr);
}

void BusNotificationCenter::subscribe() {
  auto* connection = connection_();
  if (connection == nullptr || subscription_ != 0) return;
  subscription_ = g_dbus_connection_signal_subscribe(
      connection, nullptr, notificationInterface, notificationSignal, notificationPath, nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
         gpointer self) {
        const char* name = nullptr;
        const char* object = nullptr;
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ss)"))) return;
        g_variant_get(parameters, "(&s&s)", &name, &object);
        static_cast<BusNotificationCenter*>(self)->deliver(name, object);
      },
      this, nullptr);
}

Connection BusNotificationCenter::addObserver(const std::string& name,
                                              std::function<void(const std::string& object)> action) {
  subscribe();
  std::erase_if(observers_, [](const auto& entry) { return entry.second.expired(); });
  auto shared = std::make_shared<Action>(std::move(action));
  observers_.emplace(name, shared);
  return Connection(std::move(shared));
}

void BusNotificationCenter::deliver(const std::string& name, const std::string& object) {
  std::vector<std::shared_ptr<Action>> present;
  const auto [first, last] = observers_.equal_range(name);
  for (auto it = first; it != last; ++it) {
    if (auto action = it->second.lock()) present.push_back(std::move(action));
  }
  for (const auto& action : present) (*action)(object);
}

}  // namespace platform
