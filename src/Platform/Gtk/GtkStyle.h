#pragma once

#include "Platform/View/View.h"

#include <gtk/gtk.h>

namespace platform {

/// Dresses a widget by style sheet: colours, fonts, corners. Knows nothing of layout. Main thread.
class GtkStyle {
 public:
  /// Gives `widget` the look of `modifiers` in place of the one that this object gave it before.
  void apply(GtkWidget* widget, const Modifiers& modifiers);

 private:
  std::string className_;
  const char* fontClass_ = nullptr;
};

/// Takes the round corners and the shadow from a bubble or a list on a display that has no transparent
/// windows, where they would be black.
void squareWhereNotComposed(GtkWidget* popover);

}  // namespace platform
