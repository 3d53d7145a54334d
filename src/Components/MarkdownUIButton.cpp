#include "Components/MarkdownUIButton.h"

#include <string>

namespace velkin {

namespace {

/// What a screen reader says: without the glyphs of the keys, which it would spell.
std::string nameIn(const std::string& title) { return title.substr(0, title.find(" (")); }

}  // namespace

platform::View MarkdownUIButton::body() const {
  using namespace platform;
  const auto icon =
      Symbol(imageName).frame({.height = iconSize + 4}).foregroundColor({Color::Role::primary, 0.7});
  auto button = Button(icon, action, ButtonStyle::borderless)
                    .help(title)
                    .accessibilityLabel(nameIn(title))
                    .cornerRadius(10);
  if (leavesKeyboard) button = button.leavesKeyboard();
  return useFixedWidth ? button.frame({.width = 42}) : button;
}

}  // namespace velkin
