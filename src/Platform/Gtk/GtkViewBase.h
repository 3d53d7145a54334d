#pragma once

#include <gtk/gtk.h>

namespace platform {

/// What every view of this platform has behind it: a widget.
class GtkViewBase {
 public:
  virtual ~GtkViewBase() = default;
  /// Owned by the view; it may be put into a container and taken out again.
  virtual GtkWidget* widget() = 0;
};

}  // namespace platform
