#pragma once

#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

/// What a page may load that is shut off from everything: its own inline styles, pictures that are part of
/// it, and of scripts those whose text is among `scripts`. With `pictures` those from elsewhere too, over
/// https. For the view's property "default-content-security-policy".
std::string isolatedContentSecurityPolicy(const std::vector<std::string>& scripts, bool pictures = false);

/// The processes of such pages, which give back the memory of pages that they have left. A page of ours loads
/// anew at each key press, and the engine by itself leaves hundreds of megabytes of such pages behind. New;
/// the caller owns it.
WebKitWebContext* makeIsolatedContext();

/// Turns off what reaches out of a page past such a policy, and what such a page has no use for. Before the
/// view is made.
void isolateSettings(WebKitSettings* settings);

/// Keeps the page of `view` from everything that a policy for its content doesn't reach: navigation,
/// windows, dialogues, downloads, files, permissions, the full screen. Main thread.
void isolatePage(WebKitWebView* view);

}  // namespace platform
