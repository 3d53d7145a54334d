#pragma once

namespace platform {

/// What a click on an icon in the desktop's tray does. The platform says so before it makes the status item.
/// Main thread.
enum class TrayClicks {
  /// A single left click is the button's action.
  action,
  /// A single click of any kind puts up the menu; the button's action takes a double click.
  menu
};

TrayClicks trayClicks() noexcept;
void setTrayClicks(TrayClicks clicks) noexcept;

}  // namespace platform
