#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <webkit/webkit.h>

namespace platform {

/// Has what the view's page asks for asked of the user: one question at a time, whose answers are kept for
/// the site. After two refusals nothing more is asked until the page is left. `engine` outlives the view.
/// Main thread.
void askForPermissions(WebKitWebView* view, WebEngine& engine);

/// Opens the page of what the site of the view's page was allowed and refused, where that can be taken back.
void showPermissions(WebKitWebView* view, WebEngine& engine);

}  // namespace platform
