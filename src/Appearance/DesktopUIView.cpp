#include "Appearance/DesktopUIView.h"

#include "extenstions/NSImageDesktopPicture.h"

#include <string>

namespace velkin {

using namespace platform;

namespace {

constexpr double frameRadius = 6;
constexpr double previewTextSize = 5;

}  // namespace

View DesktopUIView::body() const {
  const Frame frame{.width = desktopViewWidth, .height = desktopViewHeight};
  const auto shown = picture.get();
  // Nothing of another picture before the user's own is there.
  const auto background =
      shown ? ImageView(shown).frame(frame).cornerRadius(frameRadius)
            : VStack({}).frame(frame).background({Color::Role::gray, 0.4}).cornerRadius(frameRadius);
  const auto window = PreviewUIView{previewSize(selectedWidth), previewSize(selectedHeight)};
  // The window hangs from the edge of the desktop.
  const auto hanging =
      VStack({.spacing = 0}, {View(window), Spacer()}).padding(2).frame({.maxHeight = infinity});
  const auto name = "Preview: " + std::string(stringValue(selectedWidth)) + " by " +
                    std::string(stringValue(selectedHeight));
  return VStack({.spacing = 6},
                {ZStack({background, hanging})
                     .frame(frame)
                     .accessibilityRole(AccessibilityRole::image)
                     .accessibilityLabel(name),
                 Text("\"Full\" preview sizes may not be accurate").font(Font::caption).opacity(0.7)})
      .onAppear([state = picture, size = NSSize{desktopViewWidth, desktopViewHeight}] {
        if (state.get()) return;
        desktopPicture(size, [state](const std::shared_ptr<NSImage>& image) { state.set(image); });
      });
}

View PreviewUIView::body() const {
  const SystemFont font{.size = previewTextSize};
  const auto symbol = [](const char* name, double size) { return Symbol(name).frame({.height = size}); };
  const auto bar = HStack({.spacing = 0}, {symbol("line.3.horizontal", iconSize), Spacer(),
                                           Text("New Chat").font(font), Spacer(), symbol("plus", iconSize)});
  const auto field = HStack({.spacing = 0}, {Spacer(), symbol("paperplane", iconSizeSmall)})
                         .padding(1)
                         .border({Color::Role::primary, 0.3})
                         .cornerRadius(iconPadding)
                         .frame({.minHeight = iconSize + iconPadding});
  return VStack({.spacing = 1, .alignment = Alignment::fill},
                {Text("ChatGPT").font(font).bold(), Divider(), bar, Spacer(), field})
      .padding(iconPadding)
      .background(Color::Role::windowBackground)
      .border({Color::Role::primary, 0.25})
      .cornerRadius(iconSizeSmall)
      .frame({.width = width, .height = height});
}

}  // namespace velkin
