#pragma once

#include "Platform/Geometry.h"

namespace platform {

/// Something that can stand in a window. What it is made of is the platform's own.
class NSView {
 public:
  virtual ~NSView() = default;

  /// Where it was placed last; for a view that was never on show, the frame that it was made with.
  virtual NSRect frame() const = 0;
  /// Gives it the keyboard.
  virtual void makeFirstResponder() = 0;
};

}  // namespace platform
