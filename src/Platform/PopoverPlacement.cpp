#include "Platform/PopoverPlacement.h"

#include <algorithm>
#include <cstdint>

namespace platform {

namespace {

bool overlaps(int start, int end, int low, int high) { return start < high && end >= low; }

std::int64_t distance(int value, int low, int high) {
  if (value < low) return low - value;
  return value >= high ? value - high + 1 : 0;
}

std::int64_t squareOfDistance(PixelPoint a, PixelPoint b) {
  const std::int64_t dx = a.x - b.x;
  const std::int64_t dy = a.y - b.y;
  return dx * dx + dy * dy;
}

}  // namespace

PixelRect desktopOf(std::span<const PixelRect> monitors) {
  PixelRect all = monitors.front();
  for (const auto& monitor : monitors) {
    const int right = std::max(all.x + all.width, monitor.x + monitor.width);
    const int bottom = std::max(all.y + all.height, monitor.y + monitor.height);
    all.x = std::min(all.x, monitor.x);
    all.y = std::min(all.y, monitor.y);
    all.width = right - all.x;
    all.height = bottom - all.y;
  }
  return all;
}

PixelPoint pixelOfClick(PixelPoint told, PixelPoint pointer, int scale, bool isPointerOnPanel) {
  /// About as far as an icon reaches.
  constexpr int iconReach = 64;
  const PixelPoint scaled{told.x * scale, told.y * scale};
  const auto best = squareOfDistance(scaled, pointer) < squareOfDistance(told, pointer) ? scaled : told;
  const auto reach = std::int64_t{iconReach} * scale;
  return isPointerOnPanel && squareOfDistance(best, pointer) > reach * reach ? pointer : best;
}

std::vector<Strut> strutsAround(const PixelRect& area, const PixelRect& monitor, const PixelRect& desktop) {
  std::vector<Strut> struts;
  const auto add = [&](Strut::Edge edge, bool isKeptClear, int depth, int start, int length) {
    if (isKeptClear) struts.push_back({edge, depth, start, start + length - 1});
  };
  const int right = area.x + area.width;
  const int bottom = area.y + area.height;
  add(Strut::Edge::left, area.x > monitor.x, area.x - desktop.x, monitor.y, monitor.height);
  add(Strut::Edge::right, right < monitor.x + monitor.width, desktop.x + desktop.width - right, monitor.y,
      monitor.height);
  add(Strut::Edge::top, area.y > monitor.y, area.y - desktop.y, monitor.x, monitor.width);
  add(Strut::Edge::bottom, bottom < monitor.y + monitor.height, desktop.y + desktop.height - bottom,
      monitor.x, monitor.width);
  return struts;
}

PixelRect workArea(const PixelRect& monitor, std::span<const Strut> struts, const PixelRect& desktop) {
  int left = monitor.x;
  int top = monitor.y;
  int right = monitor.x + monitor.width;
  int bottom = monitor.y + monitor.height;
  const int middleX = monitor.x + monitor.width / 2;
  const int middleY = monitor.y + monitor.height / 2;
  for (const auto& strut : struts) {
    const bool isVertical = strut.edge == Strut::Edge::left || strut.edge == Strut::Edge::right;
    const bool meets = isVertical ? overlaps(strut.start, strut.end, monitor.y, monitor.y + monitor.height)
                                  : overlaps(strut.start, strut.end, monitor.x, monitor.x + monitor.width);
    if (!meets) continue;
    // Nobody's panel takes more than half a monitor: such a strut belongs to another one, or is nonsense.
    switch (strut.edge) {
      case Strut::Edge::left:
        if (const int edge = desktop.x + strut.depth; edge <= middleX) left = std::max(left, edge);
        break;
      case Strut::Edge::right:
        if (const int edge = desktop.x + desktop.width - strut.depth; edge >= middleX)
          right = std::min(right, edge);
        break;
      case Strut::Edge::top:
        if (const int edge = desktop.y + strut.depth; edge <= middleY) top = std::max(top, edge);
        break;
      case Strut::Edge::bottom:
        if (const int edge = desktop.y + desktop.height - strut.depth; edge >= middleY) {
          bottom = std::min(bottom, edge);
        }
        break;
    }
  }
  return {left, top, right - left, bottom - top};
}

std::size_t monitorAt(PixelPoint point, std::span<const PixelRect> monitors) {
  std::size_t nearest = 0;
  std::int64_t least = INT64_MAX;
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    const auto& monitor = monitors[i];
    const auto dx = distance(point.x, monitor.x, monitor.x + monitor.width);
    const auto dy = distance(point.y, monitor.y, monitor.y + monitor.height);
    if (dx * dx + dy * dy < least) {
      least = dx * dx + dy * dy;
      nearest = i;
    }
  }
  return nearest;
}

PixelRect placeAtIcon(std::optional<PixelPoint> anchor, int width, int height,
                      std::span<const PixelRect> monitors, std::span<const Strut> struts,
                      std::size_t primary) {
  const auto index = anchor ? monitorAt(*anchor, monitors) : std::min(primary, monitors.size() - 1);
  const auto& monitor = monitors[index];
  const auto area = workArea(monitor, struts, desktopOf(monitors));
  PixelRect placed{0, 0, std::min(width, area.width), std::min(height, area.height)};
  const int x = anchor ? anchor->x : area.x + area.width;
  // Where nothing is known of the icon, the panel at the bottom is the tray's, if it is the only one.
  const bool hasPanelAtBottomOnly = area.y == monitor.y && area.y + area.height < monitor.y + monitor.height;
  const bool isUpperHalf = anchor ? anchor->y < monitor.y + monitor.height / 2 : !hasPanelAtBottomOnly;
  placed.x = std::clamp(x - placed.width / 2, area.x, area.x + area.width - placed.width);
  placed.y = isUpperHalf ? area.y : area.y + area.height - placed.height;
  return placed;
}

PixelRect placeInMiddle(int width, int height, std::span<const PixelRect> monitors,
                        std::span<const Strut> struts, std::size_t primary) {
  const auto area = workArea(monitors[std::min(primary, monitors.size() - 1)], struts, desktopOf(monitors));
  PixelRect placed{0, 0, std::min(width, area.width), std::min(height, area.height)};
  placed.x = area.x + (area.width - placed.width) / 2;
  placed.y = area.y + (area.height - placed.height) / 2;
  return placed;
}

}  // namespace platform
