#include "Platform/Gtk/SessionKind.h"

#include <cstdlib>
#include <string_view>

namespace platform {

bool isWaylandSession() {
  const char* type = std::getenv("XDG_SESSION_TYPE");
  return std::getenv("WAYLAND_DISPLAY") != nullptr ||
         (type != nullptr && std::string_view(type) == "wayland");
}

}  // namespace platform
