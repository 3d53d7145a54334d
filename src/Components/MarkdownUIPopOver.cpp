#include "Components/MarkdownUIPopOver.h"

#include "Components/MarkdownUIButton.h"

namespace velkin {

platform::View MarkdownUIPopOver::body() const {
  using namespace platform;
  const auto open = [show = showPopOver, action = action] {
    if (action) action();
    show.set(true);
  };
  return View(MarkdownUIButton{.imageName = imageName,
                               .title = title,
                               .useFixedWidth = useFixedWidth,
                               .iconSize = iconSize,
                               .action = open})
      .disabled(isDisabled)
      .popover(showPopOver, buttons);
}

}  // namespace velkin
