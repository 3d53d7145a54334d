#pragma once

#include <optional>
#include <span>
#include <vector>

namespace platform {

/// Whole device pixels; the origin is the top left corner, as window systems count.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;

  bool contains(int px, int py) const noexcept {
    return px >= x && px < x + width && py >= y && py < y + height;
  }
};

struct PixelPoint {
  int x = 0;
  int y = 0;
  bool operator==(const PixelPoint&) const = default;
};

/// What a panel keeps clear of windows: a depth at an edge of the whole desktop, over a stretch of that edge.
struct Strut {
  enum class Edge { left, right, top, bottom };
  Edge edge = Edge::top;
  int depth = 0;
  int start = 0;
  int end = 0;
};

/// The struts that keep windows of `monitor` in `area`, for desktops whose own panels have none.
std::vector<Strut> strutsAround(const PixelRect& area, const PixelRect& monitor, const PixelRect& desktop);

/// The rectangle of all monitors; `monitors` isn't empty.
PixelRect desktopOf(std::span<const PixelRect> monitors);

/// The pixel of a click on the tray that the tray tells of as `told`: trays that scale their own windows
/// count in points, others in pixels. `pointer` is the pointer's pixel at that moment, which the click can't
/// be far from. Some panels tell of the same point whatever was clicked: where the pointer is over a panel
/// (`isPointerOnPanel`) and not near what was told, it knows better.
PixelPoint pixelOfClick(PixelPoint told, PixelPoint pointer, int scale, bool isPointerOnPanel = false);

/// The part of `monitor` that no panel keeps clear. `desktop` is the rectangle of all monitors.
PixelRect workArea(const PixelRect& monitor, std::span<const Strut> struts, const PixelRect& desktop);

/// Which monitor `point` is on, or the nearest one; `monitors` isn't empty.
std::size_t monitorAt(PixelPoint point, std::span<const PixelRect> monitors);

/// Where a window of `width` by `height` stands that belongs to a tray icon at `anchor`: centred on it, at
/// the edge of the work area on the icon's side, and no larger than the area. Without an anchor (the panel
/// didn't say, or gave a point off the screen) the top right corner serves, or the bottom right one where the
/// only panel is at the bottom.
PixelRect placeAtIcon(std::optional<PixelPoint> anchor, int width, int height,
                      std::span<const PixelRect> monitors, std::span<const Strut> struts,
                      std::size_t primary = 0);

/// In the middle of the work area of the primary monitor, and no larger than that.
PixelRect placeInMiddle(int width, int height, std::span<const PixelRect> monitors,
                        std::span<const Strut> struts, std::size_t primary = 0);

}  // namespace platform
