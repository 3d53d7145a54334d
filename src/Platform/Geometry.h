#pragma once

namespace platform {

/// Points; the origin of the screen is its bottom left corner.
struct NSPoint {
  double x = 0;
  double y = 0;
  bool operator==(const NSPoint&) const = default;
};

struct NSSize {
  double width = 0;
  double height = 0;
  bool operator==(const NSSize&) const = default;
};

struct NSRect {
  NSPoint origin;
  NSSize size;
  bool operator==(const NSRect&) const = default;

  double minX() const noexcept { return origin.x; }
  double minY() const noexcept { return origin.y; }
  double midX() const noexcept { return origin.x + size.width / 2; }
  double midY() const noexcept { return origin.y + size.height / 2; }
  double maxX() const noexcept { return origin.x + size.width; }
  double maxY() const noexcept { return origin.y + size.height; }
};

}  // namespace platform
