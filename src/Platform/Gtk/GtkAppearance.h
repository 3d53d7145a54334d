#pragma once

#include <atomic>
#include <functional>

#include <gio/gio.h>

namespace platform {

/// Whether the desktop is dark. Readable on any thread; follows changes once the toolkit runs.
class GtkAppearance {
 public:
  /// A quick look, before the toolkit runs.
  void readFromDesktop(GDBusConnection* connection);
  /// From now on by the toolkit; `changed` is called on the main loop at each change.
  void followToolkit(std::function<void()> changed);

  bool isDark() const noexcept { return isDark_.load(); }

 private:
  void update();

  std::atomic<bool> isDark_ = false;
  std::function<void()> changed_;
};

}  // namespace platform
