#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <functional>

#include <webkit/webkit.h>

namespace platform {

/// Decides on a download that its page began: `start` is called if it may, at once or when the user has said
/// so; otherwise the download is cancelled. Each press of a button or key is good for one download, and each
/// page for one besides; before more the user is asked, once for the site. Main thread.
void admitDownload(WebKitDownload* download, WebEngine& engine, std::function<void()> start);

}  // namespace platform
