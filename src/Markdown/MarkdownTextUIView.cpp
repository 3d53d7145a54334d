#include "Markdown/MarkdownTextUIView.h"

#include <algorithm>

namespace velkin {

using namespace platform;

namespace {

/// The size of letters has no lower limit on the tool bar; letters have.
constexpr double smallestLetters = 1;

}  // namespace

void MarkdownTextUIView::follow() const {
  textView->textDidChange = [self = *this] {
    const auto text = self.textView->string();
    self.textChanged(text);
    if (self.onChange) self.onChange(text);
  };
}

void MarkdownTextUIView::textChanged(const std::string& text) const {
  if (!text.empty()) return;
  isPrevNextButtonDisabled.set(true);
  isNotFoundTextHidden.set(true);
}

View MarkdownTextUIView::body() const {
  const SystemFont font{.size = std::max(fontSize.get(), smallestLetters), .weight = FontWeight::light};
  const auto editor = HostedView(
      textView, [view = textView]() -> NSView* { return view; },
      [view = textView, font](NSView&) { view->setFont(font); });
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {editor.frame({.maxWidth = infinity, .maxHeight = infinity})})
      .padding(4)
      .frame({.maxWidth = infinity, .maxHeight = infinity});
}

}  // namespace velkin
