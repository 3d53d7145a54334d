#include "Focus.h"

#include "Timing.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>

namespace bench {

namespace {

/// Windows of others go at any moment.
int ignoreErrors(Display*, XErrorEvent*) { return 0; }

}  // namespace

Focus::Focus() : display_(XOpenDisplay(nullptr)) {
  if (display_ == nullptr) refuse("needs an X display");
  XSetErrorHandler(ignoreErrors);
  activeWindow_ = XInternAtom(display_, "_NET_ACTIVE_WINDOW", False);
  window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 40, 700, 150, 100, 0, 0, 0xffffff);
  XSizeHints place = {};
  place.flags = USPosition;
  place.x = 40;
  place.y = 700;
  XSetWMNormalHints(display_, window_, &place);
  XMapWindow(display_, window_);
  XSync(display_, False);
  if (!waitFor([this] {
        take();
        return isHere();
      }))
    refuse("the other program's window did not get the keyboard");
}

Focus::~Focus() { XCloseDisplay(display_); }

Window Focus::active() const {
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  Window window = None;
  if (XGetWindowProperty(display_, DefaultRootWindow(display_), activeWindow_, 0, 1, False, XA_WINDOW, &type,
                         &format, &count, &rest, &data) == Success &&
      data != nullptr && count == 1) {
    window = *reinterpret_cast<unsigned long*>(data);
  }
  if (data != nullptr) XFree(data);
  return window;
}

bool Focus::isIn(Window window, Window ancestor) const {
  while (window != None && window != ancestor) {
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display_, window, &root, &parent, &children, &count) == 0) return false;
    if (children != nullptr) XFree(children);
    window = parent == root ? None : parent;
  }
  return window == ancestor;
}

bool Focus::isElsewhere() const {
  const auto window = active();
  if (window == None || window == window_) return false;
  XWindowAttributes attributes;
  if (XGetWindowAttributes(display_, window, &attributes) == 0 || attributes.map_state != IsViewable)
    return false;
  Window focus = None;
  int revert = 0;
  XGetInputFocus(display_, &focus, &revert);
  return focus != None && focus != PointerRoot && isIn(focus, window);
}

bool Focus::isHere() const {
  Window focus = None;
  int revert = 0;
  XGetInputFocus(display_, &focus, &revert);
  return focus == window_ && active() == window_;
}

void Focus::take() const {
  XWindowAttributes attributes;
  if (XGetWindowAttributes(display_, window_, &attributes) == 0 || attributes.map_state != IsViewable) return;
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window_;
  event.xclient.message_type = activeWindow_;
  event.xclient.format = 32;
  constexpr long fromPager = 2;
  event.xclient.data.l[0] = fromPager;
  XSendEvent(display_, DefaultRootWindow(display_), False, SubstructureRedirectMask | SubstructureNotifyMask,
             &event);
  XSync(display_, False);
}

Focus::Place Focus::place() const {
  const auto window = active();
  XWindowAttributes attributes = {};
  XGetWindowAttributes(display_, window, &attributes);
  int x = 0;
  int y = 0;
  Window child = None;
  XTranslateCoordinates(display_, window, DefaultRootWindow(display_), 0, 0, &x, &y, &child);
  return {x, y, attributes.width, attributes.height};
}

}  // namespace bench
