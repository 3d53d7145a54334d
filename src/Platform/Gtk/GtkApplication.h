#pragma once

#include "Platform/NSApplication.h"

#include <functional>

#include <gio/gio.h>

namespace platform {

/// The process on the session bus: one for each user session, whoever starts it again only says so to the
/// first.
class GtkApplicationHost : public NSApplication {
 public:
  GtkApplicationHost();
  ~GtkApplicationHost() override;
  GtkApplicationHost(const GtkApplicationHost&) = delete;
  GtkApplicationHost& operator=(const GtkApplicationHost&) = delete;

  /// Called between becoming the one process and launching the delegate.
  std::function<void()> willLaunch;

  int run(NSApplicationDelegate& delegate) override;
  [[noreturn]] void exit(int code) override;
  bool sendAction(std::string_view selector) override;
  void setTakesReservedKeys(bool takes) override;

  /// nullptr where there is no session bus, and before `run`.
  GDBusConnection* connection() const;

 private:
  static void perform(GSimpleAction* action, GVariant* parameter, gpointer host);
  void launched();
  void activated();
  void quit();
  bool becomeTheOnlyProcessWithoutBus();

  GApplication* application_;
  NSApplicationDelegate* delegate_ = nullptr;
  bool isLaunched_ = false;
};

}  // namespace platform
