#pragma once

#include <X11/Xlib.h>

namespace bench {

/// Who has the keyboard, seen from outside. Makes a window of its own, another program's for those that are
/// measured, and gives it the keyboard.
class Focus {
 public:
  Focus();
  ~Focus();
  Focus(const Focus&) = delete;
  Focus& operator=(const Focus&) = delete;

  /// True if the window manager calls another window the active one, that window is on the screen, and the
  /// keyboard is in it.
  [[nodiscard]] bool isElsewhere() const;
  /// True if the keyboard is in our own window.
  [[nodiscard]] bool isHere() const;
  /// Has our window clicked into, so to speak.
  void take() const;
  /// The active window's place; meaningful while `isElsewhere`.
  struct Place {
    int x;
    int y;
    int width;
    int height;
  };
  [[nodiscard]] Place place() const;

 private:
  [[nodiscard]] Window active() const;
  [[nodiscard]] bool isIn(Window window, Window ancestor) const;

  Display* display_;
  Window window_;
  Atom activeWindow_;
};

}  // namespace bench
