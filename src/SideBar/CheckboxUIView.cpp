#include "SideBar/CheckboxUIView.h"

namespace velkin {

using namespace platform;

namespace {

/// As it is read aloud: without the colon that leads the eye to the box.
std::string spokenName(const std::string& title, bool isChecked) {
  const auto end = title.find_last_not_of(": ");
  return title.substr(0, end == std::string::npos ? 0 : end + 1) +
         (isChecked ? ", checked" : ", not checked");
}

}  // namespace

View CheckboxUIView::body() const {
  const bool isOn = isChecked.get();
  return Button(
             HStack({Text(title).foregroundColor(Color::Role::primary), Spacer(),
                     Symbol(isOn ? "checkmark.rectangle" : "rectangle").frame({.height = 16})})
                 .frame({.maxWidth = infinity}),
             [checked = isChecked, action = action] {
               checked.set(!checked.get());
               if (action) action();
             },
             ButtonStyle::borderless)
      .frame({.maxWidth = infinity})
      .help(tooltip)
      .accessibilityLabel(spokenName(title, isOn))
      .onHover([hovering = isHovering](bool isInside) { hovering.set(isInside); });
}

}  // namespace velkin
