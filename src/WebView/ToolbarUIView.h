#pragma once

#include "Platform/View/View.h"
#include "Values/MenuHelperDelegate.h"
#include "WebView/WebView.h"

#include <optional>

namespace velkin {

/// The row of icon buttons above the main view.
struct ToolbarUIView {
  MenuHelperDelegate* menuDelegate = nullptr;
  double padding = 4;
  double iconSize = 12;
  /// The page on show, whose address the last button changes.
  std::optional<WebView> webView = std::nullopt;

  platform::View body() const;
};

}  // namespace velkin
