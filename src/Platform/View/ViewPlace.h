#pragma once

#include "Platform/Geometry.h"

#include <functional>
#include <optional>

namespace platform {

/// Where a view is at the moment. It is asked, rather than told of, since it changes whenever anything around
/// it does. Main thread.
struct ViewPlace {
  struct InWindow {
    /// As in an event.
    int windowNumber = 0;
    /// From the window's bottom left, in points.
    NSRect frame;
  };
  /// Set by who shows the view; empty while nobody does.
  std::function<std::optional<InWindow>()> find;

  std::optional<InWindow> inWindow() const { return find ? find() : std::nullopt; }
};

}  // namespace platform
