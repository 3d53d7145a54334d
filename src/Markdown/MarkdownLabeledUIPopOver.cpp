#include "Markdown/MarkdownLabeledUIPopOver.h"

#include "Components/MarkdownUIPopOver.h"

namespace velkin {

using namespace platform;

View MarkdownLabeledUIPopOver::body() const {
  const auto content = [title = title, subTitle = subTitle, toolTip = toolTip, buttons = buttons] {
    return VStack({.spacing = 8, .alignment = Alignment::fill},
                  {when(!subTitle.empty(),
                        [&] { return Text(subTitle).font(Font::caption).opacity(0.7).help(toolTip); }),
                   buttons()})
        .padding(8)
        .accessibilityRole(AccessibilityRole::group)
        .accessibilityLabel(title);
  };
  return MarkdownUIPopOver{.imageName = imageName,
                           .title = title,
                           .useFixedWidth = useFixedWidth,
                           .buttons = content,
                           .iconSize = iconSize,
                           .action = action,
                           .showPopOver = showPopOver};
}

}  // namespace velkin
