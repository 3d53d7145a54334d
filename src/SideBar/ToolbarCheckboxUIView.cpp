#include "SideBar/ToolbarCheckboxUIView.h"

#include "SideBar/CheckboxUIView.h"

namespace velkin {

platform::View ToolbarCheckboxUIView::body() const {
  using namespace platform;
  // Whoever serves the action sets the state, for the menu too.
  const Binding<bool> isShown([state = sharedState.shared()] { return state->showToolbar.get(); },
                              [](bool) {});
  return VStack({.spacing = 8, .alignment = Alignment::fill},
                {Text("Toolbar")
                     .font(Font::title2)
                     .frame({.alignment = Alignment::leading})
                     .accessibilityRole(AccessibilityRole::heading),
                 HStack({View(CheckboxUIView{.title = "Show Toolbar",
                                             .tooltip = "Check to show toolbar.",
                                             .isChecked = isShown,
                                             .isHovering = isHovering.binding(),
                                             .action = action})
                             .frame({.maxWidth = infinity})})
                     .padding(4)
                     .background({Color::Role::secondary, 0.2})
                     .cornerRadius(10),
                 Text("Alternatively, select \"Show Toolbar\" from the right-click menu")
                     .font(Font::subheadline)
                     .frame({.width = 200, .alignment = Alignment::leading})});
}

}  // namespace velkin
