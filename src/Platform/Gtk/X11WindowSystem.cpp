#include "Platform/Gtk/X11WindowSystem.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SessionKind.h"
#include "Platform/Gtk/SwayDesktop.h"
#include "Platform/Gtk/Toolkit.h"
#include "Platform/Gtk/X11Clipboard.h"
#include "Platform/Gtk/X11Desktop.h"

#include <algorithm>
#include <utility>

#include <gdk/x11/gdkx.h>
#include <unistd.h>

// What the toolkit has for X only is deprecated in its newest versions, with nothing in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace platform {

namespace {

/// Until then every window manager has given the keyboard to a window that it lets have it.
constexpr double reluctance = 0.2;

void insist(const GObjectPtr<GtkWindow>& window) {
  auto* widget = GTK_WIDGET(window.get());
  // While the hot key is held down, the window is active for the window manager, but has no keyboard yet.
  if (!gtk_widget_get_mapped(widget) || gtk_window_is_active(window.get()) ||
      X11Desktop::isActive(window.get()))
    return;
  X11Desktop::activate(window.get());
}

}  // namespace

std::vector<PixelRect> X11WindowSystem::monitors(std::size_t& primary) const {
  const auto* layout = swayLayout();
  if (layout == nullptr) return X11Desktop::monitors(primary);
  primary = layout->focused;
  return layout->monitors;
}

std::vector<Strut> X11WindowSystem::struts() const {
  const auto* layout = swayLayout();
  return layout != nullptr ? layout->struts : X11Desktop::struts();
}

std::optional<std::size_t> X11WindowSystem::mainMonitor() const {
  const auto* layout = swayLayout();
  return layout != nullptr ? layout->focused : X11Desktop::mainMonitor();
}

int X11WindowSystem::scale() const { return X11Desktop::scale(); }

std::optional<PixelPoint> X11WindowSystem::pointer() const { return X11Desktop::pointer(); }

bool X11WindowSystem::knowsPointer() const { return !isWaylandSession(); }

NSPoint X11WindowSystem::pixelOfClick(NSPoint told) const {
  if (!knowsPointer()) return told;
  const auto seen = X11Desktop::pointer();
  const auto pixel = platform::pixelOfClick({static_cast<int>(told.x), static_cast<int>(told.y)}, seen,
                                            X11Desktop::scale(), X11Desktop::isOnPanel(seen));
  return {static_cast<double>(pixel.x), static_cast<double>(pixel.y)};
}

std::vector<NSScreen> X11WindowSystem::screens() const {
  std::vector<NSScreen> screens;
  std::size_t primary = 0;
  const auto monitors = X11Desktop::monitors(primary);
  // The one where the user is.
  if (const auto main = X11Desktop::mainMonitor()) primary = *main;
  const auto struts = X11Desktop::struts();
  const double scale = X11Desktop::scale();
  PixelRect desktop;
  for (const auto& monitor : monitors) {
    desktop.width = std::max(desktop.width, monitor.x + monitor.width);
    desktop.height = std::max(desktop.height, monitor.y + monitor.height);
  }
  if (monitors.empty()) return screens;
  const auto& main = monitors[primary];
  // The main screen's bottom left corner is where all screens are counted from.
  const auto flipped = [&](const PixelRect& r) {
    return NSRect{{(r.x - main.x) / scale, (main.y + main.height - r.y - r.height) / scale},
                  {r.width / scale, r.height / scale}};
  };
  for (const auto& monitor : monitors) {
    screens.push_back({flipped(monitor), flipped(workArea(monitor, struts, desktop))});
  }
  std::swap(screens.front(), screens[primary]);
  return screens;
}

std::optional<NSPoint> X11WindowSystem::cornerOf(const NSScreen& screen) const {
  std::size_t primary = 0;
  const auto monitors = X11Desktop::monitors(primary);
  if (monitors.empty()) return std::nullopt;
  const double scale = X11Desktop::scale();
  const auto& main = monitors[primary];
  return NSPoint{screen.frame.minX() + main.x / scale, (main.y + main.height) / scale - screen.frame.maxY()};
}

std::optional<double> X11WindowSystem::panelLuminance() const {
  // What a Wayland session shows, X doesn't see.
  if (isWaylandSession()) return std::nullopt;
  return X11Desktop::panelLuminance();
}

void X11WindowSystem::setSkipsTaskbar(GtkWindow* window, bool skips) const {
  X11Desktop::setSkipsTaskbar(window, skips);
}

void X11WindowSystem::setIsDialog(GtkWindow* window, bool isDialog) const {
  X11Desktop::setIsDialog(window, isDialog);
}

void X11WindowSystem::setPositionHint(GtkWindow* window, PixelPoint position) const {
  X11Desktop::setPositionHint(window, position);
}

void X11WindowSystem::move(GtkWindow* window, PixelPoint position) const {
  X11Desktop::move(window, position);
}

void X11WindowSystem::placeAtIcon(GtkWindow* window, Placing placing) const {
  if (sway_ != nullptr) {
    // By sway alone: what X is asked for in the meantime has sway put the window in the middle once more.
    auto* const surface = gtk_native_get_surface(GTK_NATIVE(window));
    const std::string title = gtk_window_get_title(window);
    if (surface != nullptr) {
      const auto criteria = criteriaFor(gdk_x11_surface_get_xid(surface), getpid(), title);
      return sway_->place(*criteria, title, std::move(placing));
    }
  } else if (const auto place = placing.wanted()) {
    move(window, *place);
  }
  placing.done();
}

bool X11WindowSystem::placesLater() const { return swayLayout() != nullptr; }

std::optional<PixelPoint> X11WindowSystem::iconPlace(std::optional<PixelPoint> told,
                                                     bool mayBeAtPointer) const {
  if (swayLayout() != nullptr) return sway_->icon(told);
  // A click on the icon leaves the pointer there.
  if (!told && mayBeAtPointer && knowsPointer()) return pointer();
  return told;
}

const SwayLayout* X11WindowSystem::swayLayout() const {
  return sway_ != nullptr && sway_->layout() ? &*sway_->layout() : nullptr;
}

void X11WindowSystem::keepAbove(GtkWindow* window) const { X11Desktop::keepAbove(window); }

void X11WindowSystem::present(GtkWindow* window, const Activation& activation) const {
  gtk_widget_realize(GTK_WIDGET(window));
  const auto time = activation.time != 0 ? activation.time : X11Desktop::serverTime(window);
  X11Desktop::setUserTime(window, time);
  toolkit::presentWithTime(window, time);
  DispatchQueue::main().asyncAfter(reluctance,
                                   [held = GObjectPtr<GtkWindow>::retain(window)] { insist(held); });
}

bool X11WindowSystem::isActive(GtkWindow* window) const { return X11Desktop::isActive(window); }

bool X11WindowSystem::isActiveWindowOurs() const { return X11Desktop::isActiveWindowOurs(); }

std::optional<int> X11WindowSystem::numberOf(GtkWindow* window) const {
  auto* const surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (surface == nullptr) return std::nullopt;
  return static_cast<int>(gdk_x11_surface_get_xid(surface));
}

std::unique_ptr<WindowSystem::Watcher> X11WindowSystem::watch(Watcher::Events events) const {
  return std::make_unique<X11Watcher>(std::move(events));
}

int X11WindowSystem::keyboardGroup() const { return X11Desktop::keyboardGroup(); }

bool X11WindowSystem::isClipboardUntold(GdkClipboard* board) const { return X11Clipboard::isUntold(board); }

void X11WindowSystem::endClipboardRequests(GdkClipboard* board) const { X11Clipboard::endRequests(board); }

}  // namespace platform

G_GNUC_END_IGNORE_DEPRECATIONS
