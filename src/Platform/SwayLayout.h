#pragma once

#include "Platform/PopoverPlacement.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// What sway tells of its screens, in the units of its own layout: those of its Wayland windows, and the
/// pixels of the X server in it.
struct SwayLayout {
  /// At least one.
  std::vector<PixelRect> monitors;
  /// What bars, and gaps at the screens' edges, keep clear.
  std::vector<Strut> struts;
  /// The position among `monitors` of the one where the user is.
  std::size_t focused = 0;

  /// From the answers to GET_OUTPUTS and GET_WORKSPACES; nothing if these tell of no screen.
  static std::optional<SwayLayout> read(std::string_view outputs, std::string_view workspaces);

  /// True if what a tray told of a click can be the icon's place: it is on a bar. Waybar counts from the
  /// icon's own corner, which looks like the bar's beginning; so a point there says nothing.
  bool canBeIcon(PixelPoint told) const;

  /// The icon's place, by where sway put a window that it was told to put under the pointer: it keeps such a
  /// window on the screen, so at the screen's edges the place is that of the edge.
  PixelPoint iconBelow(const PixelRect& window) const;
};

/// How a command ended that was sent for one window.
enum class SwayOutcome { done, noSuchWindow, refused };
/// From the answer to RUN_COMMAND: "done" if all its parts are. Anything but such an answer is "refused".
SwayOutcome outcomeOf(std::string_view answer);

/// The place of a process' window with this title, from the answer to GET_TREE; nothing if there is none.
std::optional<PixelRect> windowInTree(std::string_view tree, int process, std::string_view title);

/// What stands for the window in a command: its number if it is one of the X server's, else process and
/// title. Nothing for a title that would have to be quoted.
std::optional<std::string> criteriaFor(std::optional<unsigned long> xWindow, int process,
                                       std::string_view title);

}  // namespace platform
