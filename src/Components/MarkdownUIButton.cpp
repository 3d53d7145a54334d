#include "Components/MarkdownUIButton.h"

namespace velkin {

platform::View MarkdownUIButton::body() const {
  using namespace platform;
  const auto icon =
      Symbol(imageName).frame({.height = iconSize + 4}).foregroundColor({Color::Role::primary, 0.7});
  auto button = Button(icon, action, ButtonStyle::borderless).help(title).cornerRadius(10);
  if (leavesKeyboard) button = button.leavesKeyboard();
  return useFixedWidth ? button.frame({.width = 42}) : button;
}

}  // namespace velkin
