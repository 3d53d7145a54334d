#pragma once

#include "Platform/Alive.h"
#include "Platform/NSMenu.h"
#include "Platform/PopoverPlacement.h"

#include <functional>
#include <memory>
#include <optional>

#include <gtk/gtk.h>

namespace platform {

/// The icon's menu as a window of ours: for panels that only tell of the right click and draw no menus, and
/// for who asks for it by a key. It closes by a choice, by Esc, by that key and by going elsewhere. Main
/// thread.
class StatusMenuWindow {
 public:
  struct Events {
    /// The number of the chosen item, from 0; the window is gone by then.
    std::function<void(std::size_t item)> chosen;
    /// It was closed without a choice.
    std::function<void()> closed;
  };

  StatusMenuWindow(std::shared_ptr<NSMenu> menu, Events events);
  ~StatusMenuWindow();
  StatusMenuWindow(const StatusMenuWindow&) = delete;
  StatusMenuWindow& operator=(const StatusMenuWindow&) = delete;

  /// At the icon, where that is known: in device pixels of the root window.
  void show(std::optional<PixelPoint> icon);
  void close();
  bool isShown() const noexcept { return window_ != nullptr; }
  /// nullptr while it isn't shown.
  GtkWindow* window() const noexcept { return window_; }

 private:
  GtkWidget* row(std::size_t number);
  bool keyPressed(guint key, GdkModifierType state);
  std::optional<PixelPoint> wantedPlace(std::optional<PixelPoint> icon) const;
  void moveTo(std::optional<PixelPoint> icon);
  void takeDown();

  std::shared_ptr<NSMenu> menu_;
  Events events_;
  GtkWindow* window_ = nullptr;
  Alive isAlive_;
};

}  // namespace platform
