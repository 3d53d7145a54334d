#pragma once

#include "Platform/Gtk/GObjectPtr.h"

#include <functional>
#include <memory>
#include <string>

#include <adwaita.h>

namespace platform {

/// Short notices at the foot of the popover, which go by themselves. Main thread.
class ToastHost {
 public:
  /// The overlay that holds `child` and the notices above it.
  GtkWidget* wrap(GtkWidget* child);

  /// In the place of the one before: what is told last holds.
  void show(const std::string& text);
  /// With a button. It waits for its turn.
  void show(const std::string& text, const std::string& button, std::function<void()> action);
  /// Gone at the latest with the last copy of what this gives.
  [[nodiscard]] std::shared_ptr<void> showUntil(const std::string& text);

 private:
  GtkWidget* overlay_ = nullptr;
  GObjectPtr<AdwToast> plain_;
};

}  // namespace platform
