#pragma once

#include "Components/MarkdownWebViewController.h"
#include "Platform/NSAppearance.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"

#include <memory>
#include <string>

namespace velkin {

/// Converted Markdown as a page. Each change of the text or of the zoom loads the page anew.
struct MarkdownWebUIView {
  platform::Binding<double> zoomLevel;
  /// As the desktop was when the view came on show: a page keeps its colours while it stands.
  platform::State<bool> isDarkMode{platform::NSAppearance::isDarkNow()};
  std::shared_ptr<MarkdownWebViewController> controller;
  /// The fragment to show, which is HTML already.
  platform::Binding<std::string> markdownState;

  platform::View body() const;
};

}  // namespace velkin
