#include "Controller/PopoverContent.h"

#include "Platform/FatalError.h"

#include <utility>

namespace velkin {

PopoverContent::PopoverContent(std::shared_ptr<platform::NSPopover> mainPopover, ServicePages servicePages)
    : popover(std::move(mainPopover)),
      pages(std::move(servicePages)),
      currentWebView(pages[WebViewSwitchType::chatgpt]) {}

bool PopoverContent::isFindableOrMarkdownView() const {
  return isFindableView() || defaults_.lastVisibleWebView() == WebViewSwitchType::markdown;
}

void PopoverContent::forgetHosts() {
  hostedNotesView.reset();
  hostedWebView.reset();
}

void PopoverContent::forgetSearch() const {
  if (defaults_.lastVisibleWebView() != WebViewSwitchType::search) return;
  defaults_.set(rawValue(view), UserDefault::lastVisibleWebView);
}

void PopoverContent::show(std::shared_ptr<platform::NSHostingController<FindableWebView>> container) {
  hostedWebView = std::move(container);
  popover->setContentViewController(hostedWebView);
  giveKeyboardToMainView();
}

void PopoverContent::show(std::shared_ptr<platform::NSHostingController<ReleaseNotesUIView>> notes) {
  hostedNotesView = std::move(notes);
  popover->setContentViewController(hostedNotesView);
}

platform::WKWebView& PopoverContent::pageOnShow() const {
  if (defaults_.lastVisibleWebView() != WebViewSwitchType::releaseNotes) return *currentWebView.webView;
  const auto& notes = platform::unwrap(hostedNotesView).rootView.notes;
  return platform::unwrap(*notes.controller).webView();
}

void PopoverContent::giveKeyboardToMainView() const {
  if (!isFindableView()) return;
  if (defaults_.lastVisibleWebView() == WebViewSwitchType::markdown) {
    if (scratchpad) scratchpad->takeKeyboard();
    return;
  }
  currentWebView.webView->makeFirstResponder();
}

}  // namespace velkin
