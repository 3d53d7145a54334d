#include "Platform/SwayLayout.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>

#include <nlohmann/json.hpp>

namespace platform {

namespace {

using nlohmann::json;

/// Beyond these it is no screen, and sums would overflow.
constexpr std::int64_t farthest = 1 << 20;
/// About as far as an icon reaches.
constexpr int iconReach = 64;

json parse(std::string_view text) { return json::parse(text, nullptr, false); }

std::optional<int> number(const json& object, const char* name) {
  const auto found = object.find(name);
  if (found == object.end() || !found->is_number_integer()) return std::nullopt;
  // One beyond the signed numbers comes out as a negative one that is out of reach, or as a small one.
  if (found->is_number_unsigned() && found->get<std::uint64_t>() > farthest) return std::nullopt;
  const auto value = found->get<std::int64_t>();
  if (value < -farthest || value > farthest) return std::nullopt;
  return static_cast<int>(value);
}

std::string text(const json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool flag(const json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_boolean() && found->get<bool>();
}

std::optional<PixelRect> rectOf(const json& object) {
  const auto rect = object.find("rect");
  if (rect == object.end() || !rect->is_object()) return std::nullopt;
  const auto x = number(*rect, "x");
  const auto y = number(*rect, "y");
  const auto width = number(*rect, "width");
  const auto height = number(*rect, "height");
  if (!x || !y || !width || !height || *width <= 0 || *height <= 0) return std::nullopt;
  return PixelRect{*x, *y, *width, *height};
}

/// The part of `area` that is within `monitor`, or all of that one if there is none.
PixelRect within(const PixelRect& area, const PixelRect& monitor) {
  const int left = std::max(area.x, monitor.x);
  const int top = std::max(area.y, monitor.y);
  const int right = std::min(area.x + area.width, monitor.x + monitor.width);
  const int bottom = std::min(area.y + area.height, monitor.y + monitor.height);
  return right > left && bottom > top ? PixelRect{left, top, right - left, bottom - top} : monitor;
}

/// Along one axis: the middle, or the edge at which the window was kept.
int coordinateBelow(int start, int length, int from, int extent) {
  const bool isAtStart = start <= from;
  const bool isAtEnd = start + length >= from + extent;
  if (isAtStart == isAtEnd) return std::clamp(start + length / 2, from, from + extent - 1);
  return isAtStart ? from : from + extent - 1;
}

}  // namespace

std::optional<SwayLayout> SwayLayout::read(std::string_view outputs, std::string_view workspaces) {
  const auto outputList = parse(outputs);
  const auto workspaceList = parse(workspaces);
  if (!outputList.is_array() || !workspaceList.is_array()) return std::nullopt;
  std::map<std::string, PixelRect> rooms;
  for (const auto& workspace : workspaceList) {
    if (!workspace.is_object() || !flag(workspace, "visible")) continue;
    if (const auto room = rectOf(workspace)) rooms[text(workspace, "output")] = *room;
  }
  SwayLayout layout;
  std::vector<PixelRect> areas;
  for (const auto& output : outputList) {
    if (!output.is_object() || !flag(output, "active")) continue;
    const auto monitor = rectOf(output);
    if (!monitor) continue;
    if (flag(output, "focused")) layout.focused = layout.monitors.size();
    layout.monitors.push_back(*monitor);
    const auto room = rooms.find(text(output, "name"));
    areas.push_back(room == rooms.end() ? *monitor : within(room->second, *monitor));
  }
  if (layout.monitors.empty()) return std::nullopt;
  const auto desktop = desktopOf(layout.monitors);
  for (std::size_t i = 0; i < areas.size(); ++i) {
    const auto around = strutsAround(areas[i], layout.monitors[i], desktop);
    layout.struts.insert(layout.struts.end(), around.begin(), around.end());
  }
  return layout;
}

bool SwayLayout::canBeIcon(PixelPoint told) const {
  const auto& monitor = monitors[monitorAt(told, monitors)];
  if (!monitor.contains(told.x, told.y)) return false;
  const auto room = workArea(monitor, struts, desktopOf(monitors));
  if (room.contains(told.x, told.y)) return false;
  return told.x - monitor.x >= iconReach || told.y - monitor.y >= iconReach;
}

PixelPoint SwayLayout::iconBelow(const PixelRect& window) const {
  const auto& monitor =
      monitors[monitorAt({window.x + window.width / 2, window.y + window.height / 2}, monitors)];
  return {coordinateBelow(window.x, window.width, monitor.x, monitor.width),
          coordinateBelow(window.y, window.height, monitor.y, monitor.height)};
}

SwayOutcome outcomeOf(std::string_view answer) {
  const auto parts = parse(answer);
  if (!parts.is_array() || parts.empty()) return SwayOutcome::refused;
  for (const auto& part : parts) {
    if (!part.is_object()) return SwayOutcome::refused;
    if (flag(part, "success")) continue;
    return text(part, "error") == "No matching node." ? SwayOutcome::noSuchWindow : SwayOutcome::refused;
  }
  return SwayOutcome::done;
}

std::optional<PixelRect> windowInTree(std::string_view tree, int process, std::string_view title) {
  const auto root = parse(tree);
  // Not by calls within calls: how deep the tree is, is said by who sends it.
  std::vector<const json*> waiting{&root};
  while (!waiting.empty()) {
    const auto& node = *waiting.back();
    waiting.pop_back();
    if (!node.is_object()) continue;
    if (number(node, "pid") == process && text(node, "name") == title) return rectOf(node);
    for (const char* name : {"nodes", "floating_nodes"}) {
      const auto below = node.find(name);
      if (below == node.end() || !below->is_array()) continue;
      for (const auto& child : *below) waiting.push_back(&child);
    }
  }
  return std::nullopt;
}

std::optional<std::string> criteriaFor(std::optional<unsigned long> xWindow, int process,
                                       std::string_view title) {
  if (xWindow) return "[id=" + std::to_string(*xWindow) + "]";
  const bool isPlain = !title.empty() && std::all_of(title.begin(), title.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == ' ' || c == '-';
  });
  if (!isPlain) return std::nullopt;
  return "[pid=" + std::to_string(process) + " title=\"^" + std::string(title) + "$\"]";
}

}  // namespace platform
