#include "Platform/Gtk/X11Desktop.h"
#include "gtk/GtkFixture.h"

#include <optional>
#include <vector>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

/// The window manager of a desktop, as far as it tells of work areas.
class X11DesktopTest : public GtkFixture {
 protected:
  X11DesktopTest() : display(XOpenDisplay(nullptr)) {
    std::size_t primary = 0;
    monitor = X11Desktop::monitors(primary).at(0);
    original = read("_NET_WORKAREA");
  }
  ~X11DesktopTest() override {
    XDeleteProperty(display, DefaultRootWindow(display), atom(ofMonitors));
    tell("_NET_WORKAREA", original);
    XCloseDisplay(display);
  }

  Atom atom(const char* name) { return XInternAtom(display, name, False); }

  std::vector<unsigned long> read(const char* name, Window from = None, Atom kind = XA_CARDINAL) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, from != None ? from : DefaultRootWindow(display), atom(name), 0, 64, False,
                       kind, &type, &format, &count, &rest, &data);
    const auto* values = reinterpret_cast<unsigned long*>(data);
    std::vector<unsigned long> found(values, values + count);
    XFree(data);
    return found;
  }

  void tell(const char* name, const std::vector<unsigned long>& values, Atom kind = XA_CARDINAL) {
    XChangeProperty(display, DefaultRootWindow(display), atom(name), kind, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(values.data()), static_cast<int>(values.size()));
    XSync(display, False);
  }

  static std::vector<unsigned long> numbers(const PixelRect& rect) {
    return {static_cast<unsigned long>(rect.x), static_cast<unsigned long>(rect.y),
            static_cast<unsigned long>(rect.width), static_cast<unsigned long>(rect.height)};
  }

  PixelRect area() const { return workArea(monitor, X11Desktop::struts(), monitor); }

  static constexpr const char* ofMonitors = "_GTK_WORKAREAS_D0";
  Display* display;
  PixelRect monitor;
  std::vector<unsigned long> original;
};

TEST_F(X11DesktopTest, APanelThatIsNoWindowIsKeptClear) {
  const PixelRect told{0, 77, monitor.width - 33, monitor.height - 77};
  tell(ofMonitors, numbers(told));
  EXPECT_EQ(area(), told);
}

TEST_F(X11DesktopTest, APanelWithAStrutCountsMoreThanTheAreaOfAllMonitors) {
  const auto before = area();
  ASSERT_NE(before, monitor) << "the panel of the session has a strut";
  tell("_NET_WORKAREA", numbers({0, 99, monitor.width, monitor.height - 99}));
  EXPECT_EQ(area(), before);
}

TEST_F(X11DesktopTest, AnOrdinaryWindowAndADialogueAreToldApart) {
  show(gtk_label_new("text"));
  const auto type = [&] {
    const auto values = read("_NET_WM_WINDOW_TYPE",
                             gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window))), XA_ATOM);
    return values.size() == 1 ? values.front() : None;
  };
  X11Desktop::setIsDialog(window, true);
  EXPECT_TRUE(wait([&] { return type() == atom("_NET_WM_WINDOW_TYPE_DIALOG"); }));
  X11Desktop::setIsDialog(window, false);
  EXPECT_TRUE(wait([&] { return type() == atom("_NET_WM_WINDOW_TYPE_NORMAL"); }));
}

TEST_F(X11DesktopTest, TheWindowManagersWordOnTheActiveWindowIsHeard) {
  show(gtk_label_new("text"));
  ASSERT_TRUE(wait([&] { return X11Desktop::isActive(window); }));
  std::optional<bool> heard;
  const X11Watcher watcher({[](bool) {}, [&](bool isOurs) { heard = isOurs; }});
  const auto own = gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window)));
  // Again and again: the session's own window manager has its word too, whenever it comes to it.
  const auto isHeardAs = [&](bool isOurs) {
    tell("_NET_ACTIVE_WINDOW", {isOurs ? own : None}, XA_WINDOW);
    return heard == isOurs;
  };
  EXPECT_TRUE(wait([&] { return isHeardAs(false); }));
  EXPECT_TRUE(wait([&] { return isHeardAs(true); }));
}

}  // namespace
}  // namespace platform
