#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <webkit/webkit.h>

namespace platform {

/// Teaches a web view what a user expects of one: links for new windows go to the browser, windows opened by
/// scripts become small windows, files can be chosen, what a page asks for is asked of the user. `engine`
/// outlives the view. Main thread.
void teachManners(WebKitWebView* view, WebEngine& engine);

}  // namespace platform
