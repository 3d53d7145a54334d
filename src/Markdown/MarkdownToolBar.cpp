#include "Markdown/MarkdownToolBar.h"

#include "Components/MarkdownUIButton.h"

#include <utility>

namespace velkin {

using namespace platform;

View markdownTool(const std::string& imageName, const std::string& title, double iconSize, Action action) {
  return MarkdownUIButton{.imageName = imageName,
                          .title = title,
                          .iconSize = iconSize,
                          .action = std::move(action),
                          .leavesKeyboard = true};
}

View markdownToolBar(const std::string& name, const std::vector<Views>& groups) {
  Views row;
  for (const auto& group : groups) {
    if (!row.empty()) row.push_back(Spacer());
    row.push_back(HStack({.spacing = 2}, group));
  }
  const auto buttons = HStack({.spacing = 8}, std::move(row)).padding(EdgeInsets{4, 8, 4, 8});
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {ScrollView(buttons.frame({.maxWidth = infinity}), Axis::horizontal)})
      .frame({.maxWidth = infinity})
      .accessibilityRole(AccessibilityRole::toolbar)
      .accessibilityLabel(name);
}

}  // namespace velkin
