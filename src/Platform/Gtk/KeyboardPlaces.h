#pragma once

#include <gtk/gtk.h>

namespace platform {

// Where the keyboard is among the parts of a window. Main thread.

/// A part of its window that F6 reaches: a page, a text, a tool bar.
void markAsPane(GtkWidget* widget);
/// Gives the keyboard to the pane behind (or before) the one that has it. False where there is no other.
bool focusNextPane(GtkWindow* window, bool isForward);

/// To be told of each press of Tab.
void noteTab(bool isBackward);
bool wasLastTabBackward();

/// Somebody gets the keyboard on purpose: who lost it by being moved doesn't take it back then.
void noteKeyboardClaim();
/// To be told before `leaving` is taken out of its container. If what has the keyboard is in it and stands in
/// another place in a later turn, it gets the keyboard again, unless somebody else has claimed it by then.
void keyboardMayLeave(GtkWidget* leaving);

}  // namespace platform
