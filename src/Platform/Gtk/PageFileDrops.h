#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <webkit/webkit.h>

namespace platform {

/// Hands files that are dropped from a file manager to what stands under the pointer in the view's page: a
/// field for files gets them, anything else the events of a drop. The engine itself gives a page no file,
/// since what it is told may come from another page; so what any page could have made isn't taken here
/// either, nor a drag that began in a window of ours. `engine` outlives the view. Main thread.
void serveFileDrops(WebKitWebView* view, WebEngine& engine);

}  // namespace platform
