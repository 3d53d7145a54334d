#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Tells whether a key that goes down in the widget is its input method's before anybody else's: it would
/// change, end or give up a composition, and there is one, or may be one in a moment. Call it for every key,
/// before the input method gets it: it follows what is composed there from here on, in a text widget of the
/// toolkit or a web view. Others, and nullptr, have no compositions. Main thread.
bool belongsToComposition(GtkWidget* focus, GdkEvent* key);

/// True while there is something in the widget that the input method hasn't committed.
bool isComposing(GtkWidget* focus);

}  // namespace platform
