#include "Markdown/MarkdownHeaderUIView.h"

#include "Markdown/MarkdownScratchpad.h"
#include "Markdown/MarkdownToolBar.h"

namespace velkin {

using namespace platform;

namespace {

constexpr double sizeStep = 1;
constexpr double zoomStep = 0.1;

}  // namespace

Views MarkdownHeaderUIView::textSizeButtons() const {
  const auto change = [fontSize = fontSize, webZoom = webZoom](double direction) {
    fontSize.set(fontSize.get() + direction * sizeStep);
    webZoom.set(webZoom.get() + direction * zoomStep);
  };
  return {markdownTool("textformat.size.smaller", "Smaller", iconSize, [change] { change(-1); }),
          markdownTool("textformat.size.larger", "Larger", iconSize, [change] { change(1); })};
}

Views MarkdownHeaderUIView::richTextButtons() const {
  const auto insert = [pad = pad](ModifierType type) {
    return [pad, type] { pad->modifierHelper().modifierClicked(type); };
  };
  return {markdownTool("bold", "Bold", iconSize, insert(ModifierType::bold)),
          markdownTool("italic", "Italics", iconSize, insert(ModifierType::italics)),
          markdownTool("strikethrough", "Strikethrough", iconSize, insert(ModifierType::strikethrough))};
}

Views MarkdownHeaderUIView::previewButtons() const {
  const auto toggle = [](const Binding<bool>& shown, const Binding<bool>& other) {
    return [shown, other] {
      other.set(false);
      shown.set(!shown.get());
    };
  };
  return {markdownTool("rectangle.bottomhalf.inset.filled", "Preview Bottom", iconSize,
                       toggle(isShowingPreviewHorizontally, isShowingPreviewVertically)),
          markdownTool("rectangle.righthalf.inset.filled", "Preview Right", iconSize,
                       toggle(isShowingPreviewVertically, isShowingPreviewHorizontally))};
}

View MarkdownHeaderUIView::body() const {
  return markdownToolBar("Style", {textSizeButtons(), richTextButtons(), previewButtons()});
}

}  // namespace velkin
