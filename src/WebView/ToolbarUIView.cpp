#include "WebView/ToolbarUIView.h"

#include "Components/MarkdownUIButton.h"
#include "Keyboard/ShortcutLegend.h"
#include "WebView/EditUrlUIButtonView.h"

#include <array>

namespace velkin {

namespace {

struct ToolbarButton {
  const char* symbol;
  const char* tooltip;
  void (MenuHelperDelegate::*action)();
};

constexpr std::array toolbarButtons = {
    ToolbarButton{"safari", "Open In Browser (⌘O)", &MenuHelperDelegate::openClicked},
    ToolbarButton{"house.circle", "Return to Home (⌘⌃R)", &MenuHelperDelegate::homeClicked},
    ToolbarButton{"arrow.triangle.2.circlepath.circle", "Reload Page (⌘R)",
                  &MenuHelperDelegate::reloadClicked},
    ToolbarButton{"gearshape", "Appearance Setting (⌘⇧S)", &MenuHelperDelegate::appearanceClicked},
    ToolbarButton{"x.circle", "Quit (⌘Q)", &MenuHelperDelegate::quitClicked},
};

}  // namespace

platform::View ToolbarUIView::body() const {
  using namespace platform;
  Views buttons;
  for (const auto& button : toolbarButtons) {
    buttons.push_back(MarkdownUIButton{.imageName = button.symbol,
                                       .title = withShortcutLegend(button.tooltip),
                                       .iconSize = iconSize,
                                       .action = [target = menuDelegate, action = button.action] {
                                         if (target != nullptr) (target->*action)();
                                       }});
  }
  buttons.push_back(EditUrlUIButtonView{.webButton = webView, .iconSize = iconSize});
  buttons.push_back(Spacer());
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {HStack({.spacing = 2}, std::move(buttons)).padding(padding)})
      .frame({.maxWidth = infinity})
      .background(Color::Role::underPageBackground)
      .accessibilityRole(AccessibilityRole::toolbar)
      .accessibilityLabel("Page");
}

}  // namespace velkin
