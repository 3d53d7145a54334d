#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/NSApplication.h"

#include <functional>
#include <vector>

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
  bool isTextBeingEdited() const override;
  void setTakesReservedKeys(bool takes) override;

  /// What the program was started for happens now, and whoever activates it from now on does so once more.
  void startHasEnded();

  /// nullptr where there is no session bus, and before `run`.
  GDBusConnection* connection() const;

 private:
  static void perform(GSimpleAction* action, GVariant* parameter, gpointer host);
  void launched();
  void activated();
  void quit();
  bool becomeTheOnlyProcessWithoutBus();

  GObjectPtr<GApplication> application_;
  NSApplicationDelegate* delegate_ = nullptr;
  void whenStarted(std::function<void()> work);
  void reopen();

  bool isStarting_ = true;
  /// What came over the bus before the tray was there.
  std::vector<std::function<void()>> waitingForStart_;
};

}  // namespace platform
