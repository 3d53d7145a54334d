#include "SearchBar/SearchResultTextUIView.h"

#include "Components/MarkdownWebUIView.h"

namespace velkin {

using namespace platform;

namespace {

constexpr double shortRowCount = 7;

}  // namespace

double SearchResultTextUIView::getHeight() const {
  const bool isShort = isMissingApiKey.get() || useSmallerHeight.get();
  return resultFontSize * (isShort ? shortRowCount : resultRowCountLimit);
}

View SearchResultTextUIView::getMissingApiKeyTextField() const {
  return Text(isMissingApiKeyString)
      .multilineTextAlignment(Alignment::leading)
      .foregroundColor({Color::Role::primary, 0.85})
      .font(SystemFont{resultFontSize, FontWeight::regular, FontDesign::monospaced})
      .padding(EdgeInsets::horizontal(8));
}

View SearchResultTextUIView::markdownTextView() const {
  return View(MarkdownWebUIView{.zoomLevel = zoomSize.binding(),
                                .controller = page->controller(),
                                .markdownState = resultHtml})
      .frame({.maxWidth = infinity})
      .cornerRadius(4)
      .padding(8);
}

View SearchResultTextUIView::body() const {
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {isMissingApiKey.get() ? getMissingApiKeyTextField() : markdownTextView()})
      .frame({.height = getHeight()});
}

}  // namespace velkin
