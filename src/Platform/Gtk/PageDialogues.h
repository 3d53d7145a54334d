#pragma once

#include "Platform/Gtk/WebEngine.h"
#include "Platform/NSPrintInfo.h"

#include <functional>

#include <webkit/webkit.h>

namespace platform {

/// Has the view's page choose files, print, tell and ask by dialogues that go with it. `engine` outlives the
/// view. Main thread.
void serveDialogues(WebKitWebView* view, WebEngine& engine);

/// As `WKWebView::printOperation`.
void askToPrint(WebKitWebView* view, WebEngine& engine, const NSPrintInfo& info, std::function<void()> ended);

/// Paper of the usual kind, with the margins that are asked for.
GtkPageSetup* pageSetupFor(const NSPrintInfo& info);

}  // namespace platform
