#pragma once

#include <gdk/gdk.h>

namespace platform {

/// What the toolkit doesn't tell of the clipboard under X. Main thread.
struct X11Clipboard {
  /// See `WindowSystem`.
  static bool isUntold(GdkClipboard* board);
  /// See `WindowSystem`. Goes on for half a second, unless somebody else takes the clipboard: a reader that
  /// was refused one kind of content asks for the next.
  static void endRequests(GdkClipboard* board);
};

}  // namespace platform
