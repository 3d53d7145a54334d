#include "Appearance/SizePickerUIView.h"

#include "Appearance/DesktopUIView.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velkin {

using namespace platform;

namespace {

/// A radio group over a scale; `chosen` is told what was chosen.
template <class Scale, class Size>
View scalePicker(const std::string& title, const Scale& scale, const Binding<Size>& selected,
                 std::function<void(Size)> chosen) {
  std::vector<std::string> labels;
  labels.reserve(scale.size());
  for (const auto size : scale) labels.emplace_back(stringValue(size));
  const Binding<int> position(
      [scale, selected] {
        return static_cast<int>(std::find(scale.begin(), scale.end(), selected.get()) - scale.begin());
      },
      [scale, selected, chosen = std::move(chosen)](int index) {
        const auto size = scale[static_cast<std::size_t>(index)];
        selected.set(size);
        chosen(size);
      });
  return VStack({.spacing = 4, .alignment = Alignment::leading},
                {Text(title).bold(), Picker(title, labels, position, PickerStyle::radioGroup)});
}

}  // namespace

View SizePickerUIView::body() const {
  return HStack({.spacing = 20, .alignment = Alignment::top},
                {Spacer(),
                 View(DesktopUIView{.selectedWidth = selectedWidth.get(),
                                    .selectedHeight = selectedHeight.get()}),
                 View(SizeRadioUIView{delegate, defaults, selectedWidth.binding(), selectedHeight.binding()}),
                 Spacer()})
      .padding(EdgeInsets{10, 16, 8, 16})
      .onChange<double>(
          defaults.webViewWidth(),
          [selected = selectedWidth](double width) { selected.set(fromRawValue<AppearanceWidth>(width)); })
      .onChange<double>(defaults.webViewHeight(), [selected = selectedHeight](double height) {
        selected.set(fromRawValue<AppearanceHeight>(height));
      });
}

View SizeRadioUIView::body() const {
  const auto apply = [target = delegate, store = defaults] {
    if (target != nullptr) target->updateWebViewWindowSize(store.webViewWidth(), store.webViewHeight());
  };
  return VStack({.spacing = 10, .alignment = Alignment::leading},
                {Text("Window Size").font(Font::title2).accessibilityRole(AccessibilityRole::heading),
                 HStack({.spacing = 24, .alignment = Alignment::top},
                        {scalePicker<decltype(allAppearanceWidths), AppearanceWidth>(
                             "Width:", allAppearanceWidths, selectedWidth,
                             [store = defaults, apply](AppearanceWidth width) {
                               store.set(rawValue(width), UserDefault::webViewWidth);
                               apply();
                             }),
                         scalePicker<decltype(allAppearanceHeights), AppearanceHeight>(
                             "Height:", allAppearanceHeights, selectedHeight,
                             [store = defaults, apply](AppearanceHeight height) {
                               store.set(rawValue(height), UserDefault::webViewHeight);
                               apply();
                             })})});
}

}  // namespace velkin
