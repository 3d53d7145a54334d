#pragma once

#include "Platform/Gtk/GObjectPtr.h"

#include <atomic>
#include <functional>

#include <gio/gio.h>

namespace platform {

/// Whether the desktop is dark. Readable on any thread; follows changes once the toolkit runs.
class GtkAppearance {
 public:
  struct Events {
    /// It is light where it was dark before, or the other way round.
    std::function<void()> changed;
    /// The desktop's portal, which hadn't answered at the start, has now. Once at the most.
    std::function<void()> firstTold;
  };

  GtkAppearance() = default;
  ~GtkAppearance();
  GtkAppearance(const GtkAppearance&) = delete;
  GtkAppearance& operator=(const GtkAppearance&) = delete;

  /// A quick look, before the toolkit runs.
  void readFromDesktop(GDBusConnection* connection);
  /// From now on by the toolkit; the events come on the main loop.
  void followToolkit(Events events);

  bool isDark() const noexcept { return isDark_.load(); }

 private:
  void update();
  void awaitPortal();
  void askLatePortal();
  void latePortalSaid(bool isDark);

  std::atomic<bool> isDark_ = false;
  Events events_;
  GObjectPtr<GDBusConnection> connection_;
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  bool isTold_ = false;
  guint watch_ = 0;
  guint changes_ = 0;
  gulong darkHandler_ = 0;
};

}  // namespace platform
