#pragma once

#include <webkit/webkit.h>

namespace platform {

/// What a page may load that is shut off from everything: its own inline styles and scripts, and pictures
/// that are part of it. For the view's property "default-content-security-policy".
inline constexpr const char* isolatedContentSecurityPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src data:; font-src "
    "data:; form-action 'none'; base-uri 'none'";

/// Keeps the page of `view` from everything that a policy for its content doesn't reach: navigation,
/// windows, dialogues, downloads, files, permissions, the full screen. Main thread.
void isolatePage(WebKitWebView* view);

}  // namespace platform
