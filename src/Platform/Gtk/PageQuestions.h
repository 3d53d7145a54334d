#pragma once

#include "Platform/Gtk/WebEngine.h"

#include <webkit/webkit.h>

namespace platform {

/// Shows what the page's scripts tell and ask (alert, confirm, prompt, and whether to leave it) as dialogues
/// at the page's window that name its host. The page waits for the answer; Escape and Return give one. A page
/// that asks again and again can be silenced.
void answerScriptQuestions(WebKitWebView* view, WebEngine& engine);

/// True if the page was silenced and waits for an answer that it won't get.
bool isSilencedAndAsking(WebKitWebView* view);

}  // namespace platform
