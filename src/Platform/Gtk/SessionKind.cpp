#include "Platform/Gtk/SessionKind.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace platform {

bool isWaylandSession() {
  const char* type = std::getenv("XDG_SESSION_TYPE");
  return std::getenv("WAYLAND_DISPLAY") != nullptr ||
         (type != nullptr && std::string_view(type) == "wayland");
}

bool isDesktop(std::string_view name) {
  const char* list = std::getenv("XDG_CURRENT_DESKTOP");
  std::string_view rest = list != nullptr ? list : "";
  while (!rest.empty()) {
    const auto end = std::min(rest.find(':'), rest.size());
    if (rest.substr(0, end) == name) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

bool isCinnamon() { return isDesktop("X-Cinnamon") || isDesktop("Cinnamon"); }

bool isSway() { return isDesktop("sway") || (isWaylandSession() && std::getenv("SWAYSOCK") != nullptr); }

bool isGnomeShell() { return isDesktop("GNOME") && !isDesktop("Budgie") && !isDesktop("X-Cinnamon"); }

}  // namespace platform
