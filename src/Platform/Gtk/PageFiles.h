#pragma once

#include "Platform/WKWebView.h"

#include <webkit/webkit.h>

namespace platform {

/// As `WKWebView::createPDF`. The view may be off the screen.
void printToPDF(WebKitWebView* view, const WKPDFConfiguration& configuration,
                WKWebView::DataCompletion completion);

/// As `WKWebView::createMHTMLData`. With `hasDoctype` the page is saved with a document type.
void saveAsMHTML(WebKitWebView* view, bool hasDoctype, WKWebView::DataCompletion completion);

}  // namespace platform
