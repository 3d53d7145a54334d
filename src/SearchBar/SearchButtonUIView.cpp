#include "SearchBar/SearchButtonUIView.h"

namespace velkin {

platform::View SearchButtonUIView::body() const {
  using namespace platform;
  constexpr double fill = 0.7;
  const bool isOff = isDisabled.get();
  Color background = isOff ? Color(Color::Role::gray) : color;
  background.opacity = fill;
  const auto button = Button(Text(title).lineLimit(1), action, ButtonStyle::borderless)
                          .padding(EdgeInsets{5, 14, 5, 14})
                          .background(background)
                          .border({Color::Role::primary, isOff ? fill : 1.0})
                          .cornerRadius(4)
                          .disabled(isOff);
  return VStack({.spacing = 0}, {button});
}

}  // namespace velkin
