#pragma once

#include "Platform/View/Binding.h"
#include "Platform/View/View.h"

#include <memory>

namespace velkin {

class MarkdownScratchpad;

/// The tool bar above the editor: the size of the letters, styles, and where the preview stands.
struct MarkdownHeaderUIView {
  std::shared_ptr<MarkdownScratchpad> pad;
  platform::Binding<double> fontSize;
  platform::Binding<double> webZoom;
  platform::Binding<bool> isShowingPreviewVertically;
  platform::Binding<bool> isShowingPreviewHorizontally;
  double iconSize = 12;

  platform::View body() const;

 private:
  platform::Views textSizeButtons() const;
  platform::Views richTextButtons() const;
  platform::Views previewButtons() const;
};

}  // namespace velkin
