#pragma once

// Before the X server's headers, whose macros are names in the tests' library.
#include "gtk/GtkFixture.h"

#include <cstring>
#include <string>
#include <utility>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <gdk/gdk.h>

namespace platform {

/// Another program that has the clipboard, on a connection of its own.
class ClipboardOwner {
 public:
  /// What it answers is up to `answer`; nothing at all if there is none.
  explicit ClipboardOwner(const char* answerType = nullptr, std::string answerBytes = {})
      : display_(XOpenDisplay(nullptr)), type_(answerType), bytes_(std::move(answerBytes)) {
    clipboard_ = XInternAtom(display_, "CLIPBOARD", False);
    window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
    XSetSelectionOwner(display_, clipboard_, window_, CurrentTime);
    XSync(display_, False);
    source_ = g_timeout_add(
        5,
        [](gpointer self) -> gboolean {
          static_cast<ClipboardOwner*>(self)->serve();
          return G_SOURCE_CONTINUE;
        },
        this);
  }
  ~ClipboardOwner() {
    g_source_remove(source_);
    XCloseDisplay(display_);
  }
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;

 private:
  void serve() {
    while (XPending(display_) > 0) {
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type != SelectionRequest || type_ == nullptr) continue;
      const auto& request = event.xselectionrequest;
      const Atom targets = XInternAtom(display_, "TARGETS", False);
      const Atom type = XInternAtom(display_, type_, False);
      Atom property = request.property;
      if (request.target == targets) {
        XChangeProperty(display_, request.requestor, property, XA_ATOM, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&type), 1);
      } else if (request.target == type && !staysSilent) {
        XChangeProperty(display_, request.requestor, property, type, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(bytes_.data()),
                        static_cast<int>(bytes_.size()));
      } else if (staysSilent) {
        continue;
      } else {
        property = None;
      }
      XEvent answer;
      std::memset(&answer, 0, sizeof(answer));
      answer.xselection.type = SelectionNotify;
      answer.xselection.requestor = request.requestor;
      answer.xselection.selection = request.selection;
      answer.xselection.target = request.target;
      answer.xselection.property = property;
      answer.xselection.time = request.time;
      XSendEvent(display_, request.requestor, False, 0, &answer);
      XFlush(display_);
    }
  }

 public:
  /// It tells what it has, and never gives it.
  bool staysSilent = false;

 private:
  Display* display_;
  const char* type_;
  std::string bytes_;
  Atom clipboard_ = None;
  Window window_ = None;
  guint source_ = 0;
};

/// Whether the toolkit has heard that the clipboard's owner has text.
inline bool isTextOnClipboard() {
  auto* clipboard = gdk_display_get_clipboard(gdk_display_get_default());
  return gdk_content_formats_contain_mime_type(gdk_clipboard_get_formats(clipboard),
                                               "text/plain;charset=utf-8") != FALSE;
}

}  // namespace platform
