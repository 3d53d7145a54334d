#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <X11/Xlib.h>

namespace bench {

struct Point {
  int x = 0;
  int y = 0;
};

struct Area {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  [[nodiscard]] int width() const noexcept { return right - left + 1; }
  [[nodiscard]] int height() const noexcept { return bottom - top + 1; }
  /// The middle and four points near the corners.
  [[nodiscard]] std::vector<Point> spread() const;
};

/// The screen and the keyboard as a person has them: from outside of the programs, on a connection of its own
/// to the display. The display's damage reports tell when something was painted, so that looking costs the
/// programs nothing while nothing changes.
class Observer {
 public:
  Observer();
  ~Observer();
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;

  /// Red, green and blue, a byte each.
  [[nodiscard]] unsigned long colourAt(Point point) const;
  [[nodiscard]] bool shows(const std::vector<Point>& points, unsigned long colour) const;
  /// The pixels of an area, row by row.
  [[nodiscard]] std::vector<unsigned long> coloursOf(const Area& area) const;
  /// The smallest rectangle around all that has the colour.
  [[nodiscard]] std::optional<Area> find(unsigned long colour) const;

  [[nodiscard]] Area screen() const;
  /// All pixels of an area, to be compared with those of another time.
  [[nodiscard]] std::string picture(const Area& area) const;

  void movePointer(Point point);
  void click(Point point);
  void holdKey(KeySym key) { sendKey(key, true); }
  void releaseKey(KeySym key) { sendKey(key, false); }

  void tapKey(KeySym key);

  /// Milliseconds from the start of `act` to the first painting after which the condition holds; nothing if
  /// that doesn't come.
  [[nodiscard]] std::optional<double> timeFrom(const std::function<void()>& act,
                                               const std::function<bool()>& isPainted);

 private:
  void sendKey(KeySym key, bool isDown);
  bool waitForPainting(int milliseconds);

  Display* display_;
  int damageEvent_ = 0;
  XID damage_ = 0;
};

}  // namespace bench
