#include "Components/MarkdownWebUIView.h"

#include "Components/MarkdownHtmlHelper.h"

namespace velkin {

platform::View MarkdownWebUIView::body() const {
  return platform::HostedView(
      controller.get(),
      [controller = controller]() -> platform::NSView* {
        controller->forgetShown();
        return &controller->view();
      },
      [controller = controller, zoom = zoomLevel.get(), isDark = isDarkMode.get(),
       fragment = markdownState.get()](platform::NSView&) {
        controller->show(zoom, MarkdownHtmlHelper(isDark).makeHTMLString(fragment));
      });
}

}  // namespace velkin
