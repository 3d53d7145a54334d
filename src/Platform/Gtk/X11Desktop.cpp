#include "Platform/Gtk/X11Desktop.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <gdk/x11/gdkx.h>
#include <glib-unix.h>

// What the toolkit has for X only is deprecated in its newest versions, with nothing in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace platform {

namespace {

GdkDisplay* gdkDisplay() { return gdk_display_get_default(); }

Display* xDisplay() { return gdk_x11_display_get_xdisplay(gdkDisplay()); }

Atom atom(const char* name) { return XInternAtom(xDisplay(), name, False); }

GdkSurface* surfaceOf(GtkWindow* window) { return gtk_native_get_surface(GTK_NATIVE(window)); }

Window xid(GtkWindow* window) { return gdk_x11_surface_get_xid(surfaceOf(window)); }

/// Windows of others vanish at any moment; what X says of that is of no interest.
class ErrorTrap {
 public:
  ErrorTrap() { gdk_x11_display_error_trap_push(gdkDisplay()); }
  ~ErrorTrap() { gdk_x11_display_error_trap_pop_ignored(gdkDisplay()); }
  ErrorTrap(const ErrorTrap&) = delete;
  ErrorTrap& operator=(const ErrorTrap&) = delete;
};

/// A property of 32-bit items, which Xlib hands out as longs.
std::vector<unsigned long> readProperty(Display* display, Window window, Atom property, Atom type) {
  Atom actualType = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  std::vector<unsigned long> values;
  if (XGetWindowProperty(display, window, property, 0, 65536, False, type, &actualType, &format, &count,
                         &rest, &data) == Success &&
      data != nullptr && format == 32) {
    const std::span items(reinterpret_cast<unsigned long*>(data), count);
    values.assign(items.begin(), items.end());
  }
  if (data != nullptr) XFree(data);
  return values;
}

void sendToRoot(GtkWindow* window, const char* message, std::array<long, 5> data) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = xid(window);
  event.xclient.message_type = atom(message);
  event.xclient.format = 32;
  std::copy(data.begin(), data.end(), event.xclient.data.l);
  XSendEvent(xDisplay(), DefaultRootWindow(xDisplay()), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

PixelRect rectAt(const std::vector<unsigned long>& values, std::size_t index) {
  return {static_cast<int>(values[index]), static_cast<int>(values[index + 1]),
          static_cast<int>(values[index + 2]), static_cast<int>(values[index + 3])};
}

/// The areas that the window manager leaves to windows on the desktop that is on show.
std::vector<PixelRect> workAreasToldByManager(bool hasStruts, std::size_t countOfMonitors) {
  const auto root = DefaultRootWindow(xDisplay());
  const auto current = readProperty(xDisplay(), root, atom("_NET_CURRENT_DESKTOP"), XA_CARDINAL);
  const std::size_t desktop = current.empty() ? 0 : current.front();
  std::vector<PixelRect> areas;
  // One for each monitor, from window managers whose panels are no windows.
  const auto ofMonitors = readProperty(
      xDisplay(), root, atom(("_GTK_WORKAREAS_D" + std::to_string(desktop)).c_str()), XA_CARDINAL);
  for (std::size_t i = 0; i + 3 < ofMonitors.size(); i += 4) areas.push_back(rectAt(ofMonitors, i));
  // One rectangle for all monitors says little; it has to serve where nothing better does.
  if (!areas.empty() || hasStruts || countOfMonitors != 1) return areas;
  const auto ofDesktops = readProperty(xDisplay(), root, atom("_NET_WORKAREA"), XA_CARDINAL);
  if (ofDesktops.size() >= 4 * (desktop + 1)) areas.push_back(rectAt(ofDesktops, 4 * desktop));
  return areas;
}

/// What the strut's panel covers, of a screen of this size.
PixelRect rectOf(const Strut& strut, int width, int height) {
  const auto along = [&](int limit) {
    const int start = std::clamp(strut.start, 0, limit);
    return std::pair(start, std::clamp(strut.end + 1, start, limit));
  };
  const auto [left, right] = along(width);
  const auto [top, bottom] = along(height);
  switch (strut.edge) {
    case Strut::Edge::left:
      return {0, top, std::min(strut.depth, width), bottom - top};
    case Strut::Edge::right:
      return {width - std::min(strut.depth, width), top, std::min(strut.depth, width), bottom - top};
    case Strut::Edge::top:
      return {left, 0, right - left, std::min(strut.depth, height)};
    case Strut::Edge::bottom:
      return {left, height - std::min(strut.depth, height), right - left, std::min(strut.depth, height)};
  }
  return {};
}

/// A colour's part in `pixel`, 0 to 1, in the proportions of light.
double lightOf(unsigned long pixel, unsigned long mask) {
  if (mask == 0) return 0;
  const double part = static_cast<double>(pixel & mask) / static_cast<double>(mask);
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

void addLuminances(const PixelRect& area, std::vector<double>& values) {
  if (area.width <= 0 || area.height <= 0) return;
  XImage* image =
      XGetImage(xDisplay(), DefaultRootWindow(xDisplay()), area.x, area.y, static_cast<unsigned>(area.width),
                static_cast<unsigned>(area.height), AllPlanes, ZPixmap);
  if (image == nullptr) return;
  for (int y = 0; y < area.height; ++y) {
    for (int x = 0; x < area.width; ++x) {
      const auto pixel = XGetPixel(image, x, y);
      values.push_back(0.2126 * lightOf(pixel, image->red_mask) + 0.7152 * lightOf(pixel, image->green_mask) +
                       0.0722 * lightOf(pixel, image->blue_mask));
    }
  }
  XDestroyImage(image);
}

/// On the screen; nothing of a window that has gone.
std::optional<PixelRect> placeOf(Window window) {
  Window root = None;
  Window child = None;
  int x = 0;
  int y = 0;
  unsigned width = 0;
  unsigned height = 0;
  unsigned border = 0;
  unsigned depth = 0;
  if (XGetGeometry(xDisplay(), window, &root, &x, &y, &width, &height, &border, &depth) == 0 ||
      XTranslateCoordinates(xDisplay(), window, root, 0, 0, &x, &y, &child) == 0) {
    return std::nullopt;
  }
  return PixelRect{x, y, static_cast<int>(width), static_cast<int>(height)};
}

/// True if X gave the identifier to GDK's own connection.
bool isOwn(Window window) {
  const auto* setup = xcb_get_setup(XGetXCBConnection(xDisplay()));
  return (window & ~static_cast<Window>(setup->resource_id_mask)) == setup->resource_id_base;
}

}  // namespace

bool X11Desktop::isAvailable() {
  auto* display = gdkDisplay();
  return display != nullptr && GDK_IS_X11_DISPLAY(display);
}

int X11Desktop::scale() {
  int most = 1;
  GListModel* list = gdk_display_get_monitors(gdkDisplay());
  for (guint i = 0; i < g_list_model_get_n_items(list); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(list, i)));
    most = std::max(most, gdk_monitor_get_scale_factor(monitor.get()));
  }
  return most;
}

std::optional<double> X11Desktop::panelLuminance() {
  const ErrorTrap trap;
  const int screen = DefaultScreen(xDisplay());
  std::vector<double> values;
  for (const auto& strut : struts()) {
    addLuminances(rectOf(strut, DisplayWidth(xDisplay(), screen), DisplayHeight(xDisplay(), screen)), values);
  }
  if (values.empty()) return std::nullopt;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::vector<PixelRect> X11Desktop::monitors(std::size_t& primary) {
  std::vector<PixelRect> rects;
  primary = 0;
  auto* first = gdk_x11_display_get_primary_monitor(gdkDisplay());
  GListModel* list = gdk_display_get_monitors(gdkDisplay());
  for (guint i = 0; i < g_list_model_get_n_items(list); ++i) {
    const auto monitor =
        GObjectPtr<GdkMonitor>::adopt(static_cast<GdkMonitor*>(g_list_model_get_item(list, i)));
    GdkRectangle area;
    gdk_monitor_get_geometry(monitor.get(), &area);
    const int factor = gdk_monitor_get_scale_factor(monitor.get());
    if (monitor.get() == first) primary = rects.size();
    rects.push_back({area.x * factor, area.y * factor, area.width * factor, area.height * factor});
  }
  return rects;
}

std::vector<Strut> X11Desktop::struts() {
  const ErrorTrap trap;
  std::vector<Strut> found;
  const auto root = DefaultRootWindow(xDisplay());
  for (const auto window : readProperty(xDisplay(), root, atom("_NET_CLIENT_LIST"), XA_WINDOW)) {
    const auto values = readProperty(xDisplay(), window, atom("_NET_WM_STRUT_PARTIAL"), XA_CARDINAL);
    if (values.size() < 12) continue;
    for (std::size_t edge = 0; edge < 4; ++edge) {
      if (values[edge] == 0) continue;
      found.push_back({static_cast<Strut::Edge>(edge), static_cast<int>(values[edge]),
                       static_cast<int>(values[4 + 2 * edge]), static_cast<int>(values[5 + 2 * edge])});
    }
  }
  std::size_t primary = 0;
  const auto all = monitors(primary);
  if (all.empty()) return found;
  for (const auto& area : workAreasToldByManager(!found.empty(), all.size())) {
    const auto& monitor = all[monitorAt({area.x + area.width / 2, area.y + area.height / 2}, all)];
    const auto around = strutsAround(area, monitor, desktopOf(all));
    found.insert(found.end(), around.begin(), around.end());
  }
  return found;
}

std::optional<std::size_t> X11Desktop::mainMonitor() {
  std::size_t primary = 0;
  const auto all = monitors(primary);
  if (all.empty()) return std::nullopt;
  const ErrorTrap trap;
  const auto active =
      readProperty(xDisplay(), DefaultRootWindow(xDisplay()), atom("_NET_ACTIVE_WINDOW"), XA_WINDOW);
  if (!active.empty() && active.front() != None) {
    if (const auto place = placeOf(active.front()))
      return monitorAt({place->x + place->width / 2, place->y + place->height / 2}, all);
  }
  return monitorAt(pointer(), all);
}

bool X11Desktop::isOnPanel(PixelPoint point) {
  std::size_t primary = 0;
  const auto all = monitors(primary);
  if (all.empty()) return false;
  const auto& monitor = all[monitorAt(point, all)];
  return monitor.contains(point.x, point.y) &&
         !workArea(monitor, struts(), desktopOf(all)).contains(point.x, point.y);
}

PixelPoint X11Desktop::pointer() {
  Window root = None;
  Window child = None;
  int x = 0;
  int y = 0;
  int childX = 0;
  int childY = 0;
  unsigned mask = 0;
  XQueryPointer(xDisplay(), DefaultRootWindow(xDisplay()), &root, &child, &x, &y, &childX, &childY, &mask);
  return {x, y};
}

void X11Desktop::setSkipsTaskbar(GtkWindow* window, bool skips) {
  gdk_x11_surface_set_skip_taskbar_hint(surfaceOf(window), skips);
  gdk_x11_surface_set_skip_pager_hint(surfaceOf(window), skips);
}

void X11Desktop::setIsDialog(GtkWindow* window, bool isDialog) {
  auto type = atom(isDialog ? "_NET_WM_WINDOW_TYPE_DIALOG" : "_NET_WM_WINDOW_TYPE_NORMAL");
  constexpr int bits = 32;
  XChangeProperty(xDisplay(), xid(window), atom("_NET_WM_WINDOW_TYPE"), XA_ATOM, bits, PropModeReplace,
                  reinterpret_cast<unsigned char*>(&type), 1);
}

void X11Desktop::setPositionHint(GtkWindow* window, PixelPoint position) {
  XSizeHints hints = {};
  long supplied = 0;
  XGetWMNormalHints(xDisplay(), xid(window), &hints, &supplied);
  hints.flags |= USPosition;
  XSetWMNormalHints(xDisplay(), xid(window), &hints);
  move(window, position);
}

void X11Desktop::move(GtkWindow* window, PixelPoint position) {
  XMoveWindow(xDisplay(), xid(window), position.x, position.y);
}

PixelRect X11Desktop::frame(GtkWindow* window) {
  const ErrorTrap trap;
  return placeOf(xid(window)).value_or(PixelRect{});
}

void X11Desktop::keepAbove(GtkWindow* window) {
  constexpr long add = 1;
  constexpr long fromApplication = 1;
  sendToRoot(window, "_NET_WM_STATE",
             {add, static_cast<long>(atom("_NET_WM_STATE_ABOVE")), 0, fromApplication, 0});
}

void X11Desktop::activate(GtkWindow* window) {
  constexpr long fromPager = 2;
  const auto time = serverTime(window);
  sendToRoot(window, "_NET_ACTIVE_WINDOW", {fromPager, static_cast<long>(time), 0, 0, 0});
}

std::uint32_t X11Desktop::serverTime(GtkWindow* window) { return gdk_x11_get_server_time(surfaceOf(window)); }

void X11Desktop::setUserTime(GtkWindow* window, std::uint32_t time) {
  gdk_x11_surface_set_user_time(surfaceOf(window), time);
}

bool X11Desktop::isActive(GtkWindow* window) {
  const ErrorTrap trap;
  const auto active =
      readProperty(xDisplay(), DefaultRootWindow(xDisplay()), atom("_NET_ACTIVE_WINDOW"), XA_WINDOW);
  return !active.empty() && active.front() == xid(window);
}

int X11Desktop::keyboardGroup() {
  XkbStateRec state = {};
  return XkbGetState(xDisplay(), XkbUseCoreKbd, &state) == Success ? state.group : 0;
}

bool X11Desktop::isActiveWindowOurs() {
  const ErrorTrap trap;
  const auto active =
      readProperty(xDisplay(), DefaultRootWindow(xDisplay()), atom("_NET_ACTIVE_WINDOW"), XA_WINDOW);
  return !active.empty() && active.front() != None && isOwn(active.front());
}

struct X11Watcher::Connection {
  Display* display = nullptr;
  int inputOpcode = 0;
  Atom activeWindow = None;
  guint source = 0;
  Events events;

  ~Connection() {
    if (source != 0) g_source_remove(source);
    if (display != nullptr) XCloseDisplay(display);
  }

  bool isPointerOverOwnWindow() const {
    Window window = DefaultRootWindow(display);
    while (window != None) {
      Window root = None;
      Window child = None;
      int ignored = 0;
      unsigned mask = 0;
      XQueryPointer(display, window, &root, &child, &ignored, &ignored, &ignored, &ignored, &mask);
      if (child != None && isOwn(child)) return true;
      window = child;
    }
    return false;
  }

  void drain() {
    bool pressed = false;
    bool changed = false;
    while (XPending(display) > 0) {
      XEvent event;
      XNextEvent(display, &event);
      if (event.type == GenericEvent && event.xcookie.extension == inputOpcode &&
          event.xcookie.evtype == XI_RawButtonPress) {
        pressed = true;
      }
      changed = changed || (event.type == PropertyNotify && event.xproperty.atom == activeWindow);
    }
    // A copy: being told may end this watcher.
    const auto tell = events;
    const bool isOver = pressed && isPointerOverOwnWindow();
    if (changed) tell.activeWindowChanged(X11Desktop::isActiveWindowOurs());
    if (pressed) tell.pressed(isOver);
  }
};

X11Watcher::X11Watcher(Events events) : connection_(std::make_unique<Connection>()) {
  connection_->events = std::move(events);
  connection_->display = XOpenDisplay(gdk_display_get_name(gdkDisplay()));
  if (connection_->display == nullptr) return;
  int event = 0;
  int error = 0;
  int major = 2;
  int minor = 2;
  if (!XQueryExtension(connection_->display, "XInputExtension", &connection_->inputOpcode, &event, &error) ||
      XIQueryVersion(connection_->display, &major, &minor) != Success) {
    return;
  }
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits = {};
  XISetMask(bits.data(), XI_RawButtonPress);
  XIEventMask mask = {XIAllMasterDevices, static_cast<int>(bits.size()), bits.data()};
  XISelectEvents(connection_->display, DefaultRootWindow(connection_->display), &mask, 1);
  connection_->activeWindow = XInternAtom(connection_->display, "_NET_ACTIVE_WINDOW", False);
  XSelectInput(connection_->display, DefaultRootWindow(connection_->display), PropertyChangeMask);
  XFlush(connection_->display);
  connection_->source = g_unix_fd_add(
      ConnectionNumber(connection_->display), G_IO_IN,
      [](gint, GIOCondition, gpointer self) -> gboolean {
        static_cast<Connection*>(self)->drain();
        return G_SOURCE_CONTINUE;
      },
      connection_.get());
}

X11Watcher::~X11Watcher() = default;

}  // namespace platform

G_GNUC_END_IGNORE_DEPRECATIONS
