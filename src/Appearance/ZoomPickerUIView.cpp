#include "Appearance/ZoomPickerUIView.h"

#include <string>
#include <utility>
#include <vector>

namespace velkin {

using namespace platform;

namespace {

constexpr double spacing = 12;
/// Room for a sample, and for a choice's name below it.
constexpr double columnWidth = 88;
constexpr double rowWidth =
    columnWidth * allAppearanceFontSizes.size() + spacing * (allAppearanceFontSizes.size() - 1);

}  // namespace

void ZoomPickerUIView::select(AppearanceFontSize size) const {
  selectedFontSize.set(size);
  defaults.set(rawValue(size), UserDefault::webViewZoom);
  if (webView) webView().setPageZoom(rawValue(size));
}

View ZoomPickerUIView::body() const {
  Views items;
  std::vector<std::string> labels;
  for (const auto size : allAppearanceFontSizes) {
    labels.emplace_back(stringValue(size));
    items.push_back(
        VStack({View(ZoomTextSelectionUIView{.fontSize = size,
                                             .isSelected = selectedFontSize.get() == size,
                                             .iconSize = fontZoomIconSize,
                                             .samples = samples,
                                             .action = [self = *this, size] { self.select(size); }})})
            .frame({.width = columnWidth}));
  }
  const Binding<int> position(
      [selected = selectedFontSize] { return static_cast<int>(selected.get()); },
      [self = *this](int index) { self.select(allAppearanceFontSizes[static_cast<std::size_t>(index)]); });
  return VStack({.spacing = 6},
                {Text("Font Size").font(Font::title2).accessibilityRole(AccessibilityRole::heading),
                 HStack({.spacing = spacing}, std::move(items)),
                 Picker("Font Size", std::move(labels), position, PickerStyle::radioRow)
                     .frame({.width = rowWidth}),
                 Text("Using \"" + std::string(stringValue(AppearanceFontSize::smallest)) +
                      "\" may result in side bar being visible")
                     .font(Font::caption)
                     .opacity(0.7)})
      .padding(EdgeInsets{8, 16, 8, 16})
      .onChange<double>(defaults.webViewZoom(), [selected = selectedFontSize](double zoom) {
        selected.set(fromRawValue<AppearanceFontSize>(zoom));
      });
}

View ZoomTextSelectionUIView::body() const {
  const Frame frame{.width = iconSize, .height = iconSize};
  const auto page =
      View(ZoomTextWebView{fontSize, samples})
          .frame(frame)
          .border({isSelected ? Color::Role::accent : Color::Role::primary, isSelected ? 1 : 0.15})
          .cornerRadius(8)
          // It shows how text looks; the keyboard passes by, to the choices below.
          .disabled(true);
  return ZStack({page, VStack({}).frame(frame).onTapGesture(action)})
      .accessibilityRole(AccessibilityRole::none);
}

View ZoomTextWebView::body() const {
  return HostedView(
      &(*samples)[fontSize],
      [samples = samples, size = fontSize]() -> NSView* { return &(*samples)[size].view(); }, [](NSView&) {});
}

}  // namespace velkin
