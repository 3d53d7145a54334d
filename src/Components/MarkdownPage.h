#pragma once

#include "Platform/WKWebView.h"

namespace velkin {

/// What a web view for converted Markdown is made with: its page runs no scripts but the program's own, opens
/// no window and reaches nothing; with `showsPictures` pictures come over https. It can be read to its end
/// though it has no scroll bar.
platform::WKWebViewConfiguration markdownPageConfiguration(bool showsPictures = false);

}  // namespace velkin
