#pragma once

#include "Platform/Geometry.h"

#include <optional>

#include <gtk/gtk.h>

namespace platform {

/// Tells the program's monitors of every mouse button that goes down or up in `window`, in a bubble of it
/// too. Main thread.
void watchButtons(GtkWindow* window);

/// The number by which the seam knows a window: the same for its life, and no other's while it lives.
int windowNumber(GtkWindow* window);

/// Where a widget lies in its window, from the window's bottom left; nothing while it has no place.
std::optional<NSRect> frameInWindow(GtkWidget* widget);

}  // namespace platform
