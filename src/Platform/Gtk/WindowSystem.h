#pragma once

#include "Platform/Geometry.h"
#include "Platform/NSScreen.h"
#include "Platform/PopoverPlacement.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

struct Activation;

/// What the desktop's window system lets a program do with its windows, and what it tells a program. On X11 a
/// window is put where the program wants it; a Wayland compositor finds the places itself and takes no
/// wishes, which then do nothing. Asked once the toolkit has a display. Main thread.
class WindowSystem {
 public:
  /// That of the toolkit's display.
  static WindowSystem& present();
  virtual ~WindowSystem() = default;

  /// False: a window has no place that could be asked for, or asked after.
  virtual bool placesWindows() const = 0;

  // What the places of windows go by; device pixels. Where windows aren't placed, nothing.
  /// The index of the primary one goes to `primary`. For a moment there may be none, while displays are
  /// plugged.
  virtual std::vector<PixelRect> monitors(std::size_t& primary) const = 0;
  virtual std::vector<Strut> struts() const = 0;
  /// The position among `monitors` of the one where the user is.
  virtual std::optional<std::size_t> mainMonitor() const = 0;
  virtual int scale() const = 0;
  /// Where the pointer was seen last.
  virtual std::optional<PixelPoint> pointer() const = 0;
  /// True if the pointer is seen wherever it goes. In a Wayland session X sees it over X's own windows only.
  virtual bool knowsPointer() const = 0;
  /// The pixel of a click on the tray, of which the tray tells as `told`.
  virtual NSPoint pixelOfClick(NSPoint told) const = 0;

  /// The screens as the program counts them, the main one first.
  virtual std::vector<NSScreen> screens() const = 0;
  /// How the connection of the monitor is called that `screen` is; empty if it can't be told.
  std::string connectorOf(const NSScreen& screen) const;
  /// How bright the desktop's panels are, 0 (black) to 1; nothing where that can't be seen.
  virtual std::optional<double> panelLuminance() const = 0;

  /// Keeps a realized window out of task bars and pagers, or lets it in.
  virtual void setSkipsTaskbar(GtkWindow* window, bool skips) const = 0;
  /// Makes a realized window a dialogue, which window managers that tile windows leave alone.
  virtual void setIsDialog(GtkWindow* window, bool isDialog) const = 0;
  /// Asks for the place of a realized window that is yet to be shown.
  virtual void setPositionHint(GtkWindow* window, PixelPoint position) const = 0;
  virtual void move(GtkWindow* window, PixelPoint position) const = 0;
  /// Where a window at the tray's icon is to stand.
  struct Placing {
    /// Asked once that is known which the place goes by; nothing if the window needs none any more.
    std::function<std::optional<PixelPoint>()> wanted;
    /// What the tray told of the click that opens the window; nothing if no click does.
    std::optional<PixelPoint> clickToldAs;
    /// It stands there, or won't.
    std::function<void()> done;
    /// The desktop doesn't know the window, though it was asked for a second ago.
    std::function<void()> missing;
  };
  /// Puts a window that was asked for there: at once, or, where the desktop has to be asked, later.
  virtual void placeAtIcon(GtkWindow* window, Placing placing) const = 0;
  /// True if that is later, and until then the window stands elsewhere.
  virtual bool placesLater() const = 0;
  /// The tray icon's place, by what the tray told of the last click, or, if `mayBeAtPointer`, by where the
  /// pointer is.
  virtual std::optional<PixelPoint> iconPlace(std::optional<PixelPoint> told, bool mayBeAtPointer) const = 0;
  /// Keeps a mapped window above others, until it is unmapped.
  virtual void keepAbove(GtkWindow* window) const = 0;
  /// Shows a window with the right to the keyboard that a global shortcut, or a click in the tray, gives it.
  virtual void present(GtkWindow* window, const Activation& activation) const = 0;

  /// True if the window manager says that this window is the active one. One that says nothing: false.
  virtual bool isActive(GtkWindow* window) const = 0;
  /// True if it says that the active window is one of this process.
  virtual bool isActiveWindowOurs() const = 0;
  /// As the display knows a window that is on the screen.
  virtual std::optional<int> numberOf(GtkWindow* window) const = 0;

  /// Hears of what happens outside of the program's windows for as long as it lives.
  class Watcher {
   public:
    struct Events {
      /// A button of the pointer went down, wherever that was.
      std::function<void(bool isOverOwnWindow)> pressed;
      /// The window manager has named another active window, one of this process or not.
      std::function<void(bool isOurs)> activeWindowChanged;
    };
    virtual ~Watcher() = default;
  };
  /// nullptr where a program hears of its own windows only.
  virtual std::unique_ptr<Watcher> watch(Watcher::Events events) const = 0;

  /// The keyboard's active layout among those that are set up, from 0, which is also the guess where nobody
  /// tells.
  virtual int keyboardGroup() const = 0;
  /// True if the state of a key event tells whether Super is down.
  virtual bool tellsOfSuper() const = 0;
  /// True if somebody holds what can be pasted, and may not have said yet what it is.
  virtual bool isClipboardUntold(GdkClipboard* board) const = 0;
  /// Ends the requests to an owner of the clipboard that answers nobody: whoever made them hears of a
  /// failure. Left alone, each would keep its reader, a whole page for one, and take the next owner's answer
  /// for its own.
  virtual void endClipboardRequests(GdkClipboard* board) const = 0;
  /// Has the desktop find the program's entry by its windows.
  virtual void nameProgram(const char* identifier) const = 0;

 private:
  /// The upper left corner of a screen, as the toolkit counts it.
  virtual std::optional<NSPoint> cornerOf(const NSScreen& screen) const = 0;
};

/// `gtk_window_present`, by the right of the activation whose actions run now, if there is one: then a window
/// manager that keeps the keyboard to itself is asked once more after a moment. Main thread.
void presentWindow(GtkWindow* window);

}  // namespace platform
