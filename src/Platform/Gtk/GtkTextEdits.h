#pragma once

#include "Platform/NSTextView.h"

#include <string>
#include <string_view>

#include <gtk/gtk.h>

namespace platform {

std::string textOf(GtkTextBuffer* buffer);

/// Puts `text` in the place of `range` as one step of undo, and the cursor behind it. `text` is well-formed
/// UTF-8 without NUL.
void replaceText(GtkTextBuffer* buffer, NSRange range, std::string_view text);

/// Brings the buffer to `text` as one step of undo, touching only what differs, so that a cursor elsewhere
/// stays where it is. False if there was nothing to do.
bool changeText(GtkTextBuffer* buffer, const std::string& text);

}  // namespace platform
