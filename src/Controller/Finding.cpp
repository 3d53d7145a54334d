#include "Controller/Finding.h"

namespace velkin {

bool Finding::hasFindBar() const {
  return content_.isFindableView() && content_.view != WebViewSwitchType::markdown;
}

void Finding::toggle() {
  if (!hasFindBar()) return;
  auto& isSearching = content_.sharedState->isSearching;
  isSearching.set(!isSearching.get());
}

bool Finding::end() {
  auto& isSearching = content_.sharedState->isSearching;
  if (!isSearching.get()) return false;
  if (!hasFindBar() || !content_.popover->isShown()) {
    // A find bar that isn't on show holds nothing back.
    isSearching.set(false);
    return false;
  }
  content_.scripting->stopFinding("", *content_.currentWebView.webView);
  toggle();
  content_.giveKeyboardToMainView();
  return true;
}

}  // namespace velkin
