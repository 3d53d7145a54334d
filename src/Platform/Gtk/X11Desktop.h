#pragma once

#include "Platform/Gtk/WindowSystem.h"
#include "Platform/PopoverPlacement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

/// What GTK doesn't offer of an X11 session: placing windows, keeping them above, panels' struts, clicks
/// elsewhere. On another window system `isAvailable` is false and nothing else may be called: so nobody asks
/// but `WindowSystem`, which is what the windows go by. Main thread.
class X11Desktop {
 public:
  static bool isAvailable();

  /// In device pixels; the index of the primary one goes to `primary`.
  static std::vector<PixelRect> monitors(std::size_t& primary);
  /// What panels keep clear, and what the window manager keeps clear for panels of its own.
  static std::vector<Strut> struts();
  /// The position among `monitors` of the one with the window that has the keyboard, failing that with the
  /// pointer; nothing while there is none.
  static std::optional<std::size_t> mainMonitor();
  static PixelPoint pointer();
  /// True if the point is where a panel keeps other windows away.
  static bool isOnPanel(PixelPoint point);
  static int scale();
  /// How bright the desktop's panels are, 0 (black) to 1, by the middle one of their pixels on the screen;
  /// nothing where no panel keeps windows away.
  static std::optional<double> panelLuminance();

  /// Keeps a realized window out of task bars and pagers, or lets it in.
  static void setSkipsTaskbar(GtkWindow* window, bool skips);
  /// Makes a realized window a dialogue, or an ordinary one: window managers that tile windows leave
  /// dialogues alone.
  static void setIsDialog(GtkWindow* window, bool isDialog);
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

/// Takes nothing of what it hears away from anybody. Only made while it is needed.
class X11Watcher : public WindowSystem::Watcher {
 public:
  explicit X11Watcher(Events events);
  ~X11Watcher() override;
  X11Watcher(const X11Watcher&) = delete;
  X11Watcher& operator=(const X11Watcher&) = delete;

 private:
  struct Connection;
  std::unique_ptr<Connection> connection_;
};

}  // namespace platform
