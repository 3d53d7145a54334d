#pragma once

#include <string>

#include <gtk/gtk.h>

namespace platform {

/// Shows a symbolic icon in the colour of the text around it: the desktop's theme's own, ours, or, where the
/// theme has none of that name, the toolkit's usual theme's.
void showSymbol(GtkImage* image, const std::string& iconName);

}  // namespace platform
