#include "Components/MarkdownUIMenuButton.h"

namespace velkin {

namespace {

using namespace platform;

constexpr double buttonRadius = 7;
/// Of a row with a text of any length.
constexpr double labelWidth = 300;

template <class MenuButton>
View row(const MenuButton& button, View label) {
  const bool isLit = button.isHovering.get() && !button.isDisabled;
  return Button(label.foregroundColor(isLit ? Color::Role::selectedText : Color::Role::primary),
                button.action, ButtonStyle::borderless)
      .padding(EdgeInsets{5, 10, 5, 10})
      .background(isLit ? Color::Role::accent : Color::Role::clear)
      .cornerRadius(buttonRadius)
      .help(button.toolTip)
      .disabled(button.isDisabled)
      .onHover([isHovering = button.isHovering](bool isInside) { isHovering.set(isInside); });
}

Alignment alignment(bool isCentred) { return isCentred ? Alignment::center : Alignment::leading; }

}  // namespace

View MarkdownUIMenuButton::body() const {
  return row(*this, Text(title).frame({.maxWidth = infinity, .alignment = alignment(shouldCenterTitle)}));
}

View MarkdownUIMenuLabelButton::body() const {
  return row(*this, Text(title).lineLimit(1).frame(
                        {.width = labelWidth, .alignment = alignment(shouldCenterTitle)}));
}

}  // namespace velkin
