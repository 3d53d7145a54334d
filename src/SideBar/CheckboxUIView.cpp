#include "SideBar/CheckboxUIView.h"

namespace velkin {

using namespace platform;

namespace {

/// As it is read aloud: without the colon that leads the eye to the box.
std::string spokenName(const std::string& title) {
  const auto end = title.find_last_not_of(": ");
  return title.substr(0, end == std::string::npos ? 0 : end + 1);
}

}  // namespace

View CheckboxUIView::body() const {
  const Binding<bool> isOn([checked = isChecked] { return checked.get(); },
                           [checked = isChecked, action = action](bool isNowOn) {
                             checked.set(isNowOn);
                             if (action) action();
                           });
  return HStack({.spacing = 6}, {HStack({Text(title).foregroundColor(Color::Role::primary), Spacer()})
                                     .frame({.maxWidth = infinity})
                                     .onTapGesture([isOn] { isOn.set(!isOn.get()); }),
                                 CheckBox("", isOn).accessibilityLabel(spokenName(title))})
      .frame({.minHeight = 32, .maxWidth = infinity})
      .padding(EdgeInsets{0, 10, 0, 10})
      .help(tooltip)
      .onHover([hovering = isHovering](bool isInside) { hovering.set(isInside); });
}

}  // namespace velkin
