#include "Platform/Gtk/GtkPasteboard.h"

#include "Platform/UTF8.h"

#include <gtk/gtk.h>

namespace platform {

namespace {

GdkClipboard* clipboard() {
  auto* display = gdk_display_get_default();
  return display != nullptr ? gdk_display_get_clipboard(display) : nullptr;
}

}  // namespace

void GtkPasteboard::clearContents() {
  // Given up and taken again at once, the clipboard would be nobody's: the news of the first overtakes the
  // second. So it is kept, with nothing in it.
  if (auto* board = clipboard()) gdk_clipboard_set_text(board, "");
}

bool GtkPasteboard::setString(const std::string& text, std::string_view type) {
  auto* board = clipboard();
  if (board == nullptr || type != NSPasteboardTypeString) return false;
  gdk_clipboard_set_text(board, withoutNulCharacters(text).c_str());
  return true;
}

}  // namespace platform
