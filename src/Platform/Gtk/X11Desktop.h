#pragma once

#include "Platform/PopoverPlacement.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

/// What GTK doesn't offer of an X11 session: placing windows, keeping them above, panels' struts, clicks
/// elsewhere. On another window system `isAvailable` is false and nothing else may be called. Main thread.
class X11Desktop {
 public:
  static bool isAvailable();

  /// In device pixels; the index of the primary one goes to `primary`.
  static std::vector<PixelRect> monitors(std::size_t& primary);
  static std::vector<Strut> struts();
  static PixelPoint pointer();
  static int scale();

  /// Keeps a realized window out of task bars and pagers, or lets it in.
  static void setSkipsTaskbar(GtkWindow* window, bool skips);
  /// Asks for a place, before the window is mapped: window managers read this instead of choosing their own.
  static void setPositionHint(GtkWindow* window, PixelPoint position);
  static void move(GtkWindow* window, PixelPoint position);
  /// A mapped window's place on the screen.
  static PixelRect frame(GtkWindow* window);
  /// Keeps a mapped window above others; forgotten by the window manager each time it is unmapped.
  static void keepAbove(GtkWindow* window);
  /// The keyboard for a mapped window, however reluctant the window manager is.
  static void activate(GtkWindow* window);
  /// The server's present time, for a realized window.
  static std::uint32_t serverTime(GtkWindow* window);
  /// Tells the window manager when the user did what brings the window up; before it is shown.
  static void setUserTime(GtkWindow* window, std::uint32_t time);
  /// True if the window manager says that this window is the active one.
  static bool isActive(GtkWindow* window);
  /// The keyboard's active layout among those that are set up, from 0.
  static int keyboardGroup();
  /// True if the window manager says that the active window is one of this process.
  static bool isActiveWindowOurs();
};

/// Hears of every press of a pointer button anywhere, for as long as it lives, without taking anything away
/// from anybody. Only made while it is needed.
class X11PressWatcher {
 public:
  /// `onPress` is told whether the pointer was over a window of this process.
  explicit X11PressWatcher(std::function<void(bool isOverOwnWindow)> onPress);
  ~X11PressWatcher();
  X11PressWatcher(const X11PressWatcher&) = delete;
  X11PressWatcher& operator=(const X11PressWatcher&) = delete;

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace platform
