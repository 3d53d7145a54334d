#pragma once

#include "Platform/Alive.h"
#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSWorkspace.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <gio/gio.h>

namespace platform {

class GtkWorkspace : public NSWorkspace {
 public:
  explicit GtkWorkspace(std::function<GDBusConnection*()> connection) : connection_(std::move(connection)) {}
  ~GtkWorkspace() override;
  GtkWorkspace(const GtkWorkspace&) = delete;
  GtkWorkspace& operator=(const GtkWorkspace&) = delete;

  bool open(const URL& url) override;
  std::vector<NSRunningApplication> runningApplications() override;
  void deliver(NSUserNotification notification) override;
  void beep() override;
  std::optional<std::string> desktopImageURLForScreen(const NSScreen& screen) override;
  void activateFileViewerSelecting(const std::string& path) override;

 private:
  void listenToNotices(GDBusConnection* connection);

  std::function<GDBusConnection*()> connection_;
  /// By the number that the desktop gave the notice.
  std::map<std::uint32_t, std::function<void()>> noticeActions_;
  unsigned noticeSubscription_ = 0;
  Alive isAlive_;
};

/// Notifications as signals on the session bus; without one, they stay in the process.
class BusNotificationCenter : public NSDistributedNotificationCenter {
 public:
  explicit BusNotificationCenter(std::function<GDBusConnection*()> connection);
  ~BusNotificationCenter() override;
  BusNotificationCenter(const BusNotificationCenter&) = delete;
  BusNotificationCenter& operator=(const BusNotificationCenter&) = delete;

  void post(const std::string& name, const std::string& object) override;
  Connection addObserver(const std::string& name,
                         std::function<void(const std::string& object)> action) override;

  /// To the observers in this process alone.
  void deliver(const std::string& name, const std::string& object);

 private:
  using Action = std::function<void(const std::string&)>;

  void subscribe();

  std::function<GDBusConnection*()> connection_;
  unsigned subscription_ = 0;
  std::multimap<std::string, std::weak_ptr<Action>> observers_;
};

}  // namespace platform
