#pragma once

#include <gtk/gtk.h>

namespace platform {

/// A key that goes down in the widget, told before its input method gets it: follows what is composed there
/// from here on, in a text widget of the toolkit or a web view. Others, and nullptr, have no compositions.
/// Main thread.
void noteKeyOfText(GtkWidget* focus, guint keyval);

/// True while there is something in the widget that the input method hasn't committed.
bool isComposing(GtkWidget* focus);

/// True for the keys that change, end or give up a composition: they belong to the input method while there
/// is one.
bool isKeyOfCompositions(guint keyval);

}  // namespace platform
