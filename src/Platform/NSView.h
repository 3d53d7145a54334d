#pragma once

#include "Platform/Geometry.h"

#include <optional>

namespace platform {

/// Something that can stand in a window. What it is made of is the platform's own.
class NSView {
 public:
  virtual ~NSView() = default;

  /// Where it was placed last; for a view that was never on show, the frame that it was made with.
  virtual NSRect frame() const = 0;
  /// Gives it the keyboard.
  virtual void makeFirstResponder() = 0;

  /// Puts `view` above this one: in its middle at `size`, or over all of it. A view that can't hold others
  /// ignores it. The owner of `view` keeps it alive, or takes it out before.
  virtual void addSubview(NSView& view, std::optional<NSSize> size) = 0;
  virtual void removeSubview(NSView& view) = 0;
};

}  // namespace platform
