#pragma once

#include "Platform/WKWebView.h"

namespace platform {

/// Counts the pages that a web view has loaded. It outlives the web view, or is taken from it.
class Loads : public WKNavigationDelegate {
 public:
  int finished = 0;
  void didFinish(WKWebView&) override { ++finished; }
};

}  // namespace platform
