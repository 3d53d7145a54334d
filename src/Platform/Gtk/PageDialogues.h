#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <webkit/webkit.h>

namespace platform {

/// Has the view's page choose files, print, tell and ask by dialogues that go with it. `engine` outlives the
/// view. Main thread.
void serveDialogues(WebKitWebView* view, WebEngine& engine);

}  // namespace platform
