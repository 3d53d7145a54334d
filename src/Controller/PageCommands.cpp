#include "Controller/PageCommands.h"

#include "Helpers/ViewAddresses.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NSWorkspace.h"

namespace velkin {

using platform::debugLog;

void PageCommands::scrollPageUp() {
  debugLog("handlePageUp!");
  content_.currentWebView.webView->scrollPageUp();
}

void PageCommands::scrollPageDown() {
  debugLog("handlePageDown!");
  content_.currentWebView.webView->scrollPageDown();
}

void PageCommands::reload() {
  debugLog("Reload click!");
  // In a later turn, so that the menu can finish closing.
  platform::DispatchQueue::main().async(
      [webView = content_.currentWebView.webView, scripting = content_.scripting] {
        webView->reload();
        scripting->pageReloaded();
      });
}

void PageCommands::reloadFromOrigin() {
  debugLog("Reload From Origin click!");
  const auto last = defaults_.lastVisibleWebView();
  // The onboarding has no address of its own to go back to.
  if (last == WebViewSwitchType::onboarding) return;
  content_.currentWebView.webView->load(platform::URLRequest{getUrl(last)});
  content_.scripting->pageReloaded();
}

void PageCommands::openInBrowser() {
  debugLog("Open click!");
  if (const auto url = content_.currentWebView.webView->url()) platform::NSWorkspace::shared().open(*url);
}

}  // namespace velkin
