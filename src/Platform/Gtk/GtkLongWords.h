#pragma once

#include <gtk/gtk.h>

namespace platform {

/// From here on a line with a word of over a thousand characters wraps between any two characters. The
/// toolkit would wrap it there anyway, as no word is wider than the window, but looks for a better place
/// again and again: for 50,000 characters some ten seconds at each key.
void wrapLongWords(GtkTextBuffer* buffer);

}  // namespace platform
