#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Follows what an input method composes in the widget from here on: a text widget of the toolkit or a web
/// view. Others, and nullptr, have no compositions. Main thread.
void followComposition(GtkWidget* focus);

/// True while text stands in the widget that the input method hasn't committed.
bool isComposing(GtkWidget* focus);

/// True for the keys that change, end or give up a composition: they belong to the input method while there
/// is one.
bool isKeyOfCompositions(guint keyval);

}  // namespace platform
