#include "WebView/ActionUIView.h"

#include <array>

namespace velkin {

namespace {

constexpr std::array symbols = {"chevron.left",
                                "chevron.right",
                                "chevron.up",
                                "chevron.down",
                                "arrow.up.left.and.arrow.down.right",
                                "arrow.down.right.and.arrow.up.left"};

}  // namespace

platform::View ActionUIView::body() const {
  using namespace platform;
  return VStack({Spacer(), Symbol(symbols[static_cast<std::size_t>(imageName)]).frame({.height = size / 2}),
                 Spacer()})
      .frame({.width = size, .height = size})
      .background({Color::Role::windowBackground, 0.85})
      .cornerRadius(10);
}

}  // namespace velkin
