#include "Observer.h"

#include "Timing.h"

#include <algorithm>

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xdamage.h>
#include <poll.h>

namespace bench {

namespace {

constexpr unsigned long colourBits = 0xffffff;
/// After this time something else is wrong than speed.
constexpr double patience = 5000;

}  // namespace

std::vector<Point> Area::spread() const {
  const int x = width() / 10;
  const int y = height() / 10;
  return {{(left + right) / 2, (top + bottom) / 2},
          {left + x, top + y},
          {right - x, top + y},
          {left + x, bottom - y},
          {right - x, bottom - y}};
}

Observer::Observer() : display_(XOpenDisplay(nullptr)) {
  if (display_ == nullptr) refuse("needs a display");
  int ignored = 0;
  int major = 0;
  int minor = 0;
  if (XTestQueryExtension(display_, &ignored, &ignored, &major, &minor) == False ||
      XDamageQueryExtension(display_, &damageEvent_, &ignored) == False)
    refuse("the display can't press keys or tell of paintings");
  XDamageQueryVersion(display_, &major, &minor);
  damage_ = XDamageCreate(display_, DefaultRootWindow(display_), XDamageReportNonEmpty);
}

Observer::~Observer() { XCloseDisplay(display_); }

unsigned long Observer::colourAt(Point point) const {
  XImage* image =
      XGetImage(display_, DefaultRootWindow(display_), point.x, point.y, 1, 1, AllPlanes, ZPixmap);
  const auto colour = XGetPixel(image, 0, 0) & colourBits;
  XDestroyImage(image);
  return colour;
}

bool Observer::shows(const std::vector<Point>& points, unsigned long colour) const {
  return std::all_of(points.begin(), points.end(), [&](Point point) { return colourAt(point) == colour; });
}

std::vector<unsigned long> Observer::coloursOf(const Area& area) const {
  XImage* image = XGetImage(display_, DefaultRootWindow(display_), area.left, area.top,
                            static_cast<unsigned>(area.width()), static_cast<unsigned>(area.height()),
                            AllPlanes, ZPixmap);
  std::vector<unsigned long> colours;
  for (int y = 0; y < image->height; ++y) {
    for (int x = 0; x < image->width; ++x) colours.push_back(XGetPixel(image, x, y) & colourBits);
  }
  XDestroyImage(image);
  return colours;
}

std::optional<Area> Observer::find(unsigned long colour) const {
  XImage* image =
      XGetImage(display_, DefaultRootWindow(display_), 0, 0, static_cast<unsigned>(DisplayWidth(display_, 0)),
                static_cast<unsigned>(DisplayHeight(display_, 0)), AllPlanes, ZPixmap);
  std::optional<Area> found;
  for (int y = 0; y < image->height; ++y) {
    for (int x = 0; x < image->width; ++x) {
      if ((XGetPixel(image, x, y) & colourBits) != colour) continue;
      if (!found) found = Area{x, y, x, y};
      found->left = std::min(found->left, x);
      found->right = std::max(found->right, x);
      found->bottom = y;
    }
  }
  XDestroyImage(image);
  return found;
}

Area Observer::screen() const {
  return {0, 0, DisplayWidth(display_, 0) - 1, DisplayHeight(display_, 0) - 1};
}

std::string Observer::picture(const Area& area) const {
  XImage* image = XGetImage(display_, DefaultRootWindow(display_), area.left, area.top,
                            static_cast<unsigned>(area.width()), static_cast<unsigned>(area.height()),
                            AllPlanes, ZPixmap);
  std::string pixels(
      image->data, static_cast<std::size_t>(image->bytes_per_line) * static_cast<std::size_t>(image->height));
  XDestroyImage(image);
  return pixels;
}

void Observer::movePointer(Point point) {
  XTestFakeMotionEvent(display_, -1, point.x, point.y, CurrentTime);
  XSync(display_, False);
}

void Observer::click(Point point) {
  movePointer(point);
  XTestFakeButtonEvent(display_, 1, True, CurrentTime);
  XTestFakeButtonEvent(display_, 1, False, CurrentTime);
  XSync(display_, False);
}

void Observer::tapKey(KeySym key) {
  holdKey(key);
  releaseKey(key);
}

void Observer::sendKey(KeySym key, bool isDown) {
  XTestFakeKeyEvent(display_, XKeysymToKeycode(display_, key), isDown ? True : False, CurrentTime);
  XFlush(display_);
}

bool Observer::waitForPainting(int milliseconds) {
  bool isPainted = false;
  while (!isPainted) {
    while (XPending(display_) > 0) {
      XEvent event;
      XNextEvent(display_, &event);
      isPainted = isPainted || event.type == damageEvent_ + XDamageNotify;
    }
    if (isPainted) break;
    pollfd connection{ConnectionNumber(display_), POLLIN, 0};
    if (poll(&connection, 1, milliseconds) <= 0) return false;
  }
  // From here on the next painting is reported anew; what was painted before it is on the screen.
  XDamageSubtract(display_, damage_, None, None);
  return true;
}

std::optional<double> Observer::timeFrom(const std::function<void()>& act,
                                         const std::function<bool()>& isPainted) {
  while (waitForPainting(0)) {
  }
  const auto start = Clock::now();
  act();
  std::optional<double> time;
  while (!time && millisecondsSince(start) < patience) {
    if (waitForPainting(100) && isPainted()) time = millisecondsSince(start);
  }
  return time;
}

}  // namespace bench
