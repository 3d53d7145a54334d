#include "Appearance/AppearanceFontSize.h"
#include "Keyboard/GlobalShortcutsNoticeUIView.h"
#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NSApplication.h"
#include "Platform/NSScreen.h"
#include "Platform/NSWorkspace.h"
#include "VelkinImpl.h"

#include <array>
#include <string>
#include <utility>

namespace velkin {

using platform::debugLog;
using platform::NSMenuItem;
using platform::NSPanel;

namespace {

/// The cases of `AppearanceFontSize`, as the log names them.
constexpr std::array appearanceCaseNames = {"largest", "larger", "normal", "smaller", "smallest"};

}  // namespace

bool VelkinImpl::toggle(NSMenuItem& item) {
  const bool isOn = item.state() == NSMenuItem::State::off;
  item.setState(isOn ? NSMenuItem::State::on : NSMenuItem::State::off);
  return isOn;
}

void VelkinImpl::stickyClicked() {
  const bool isOn = toggle(*menuBarHelper().stickyMenuItem);
  debugLog("VelkinImpl", "stickyClicked()", isOn ? "on" : "off");
  defaults.set(isOn, UserDefault::stickyMenu);
  updatePopoverBehavior(false);
}

void VelkinImpl::toolbarClicked() {
  const bool isOn = toggle(*menuBarHelper().showToolbarMenuItem);
  debugLog("VelkinImpl", "toolbarClicked()", isOn ? "on" : "off");
  defaults.set(isOn, UserDefault::showToolBar);
  isFindingWebState->showToolbar.set(isOn);
}

void VelkinImpl::experimentalClicked() {
  const bool isOn = toggle(*menuBarHelper().experimentalMenuItem);
  debugLog("VelkinImpl", "experimentalClicked()", isOn ? "on" : "off");
  defaults.set(isOn, UserDefault::experimentalEnabled);
}

void VelkinImpl::preferencesClicked() {
  isDismissingPopUpMenu = true;
  toggleMenu();
}

void VelkinImpl::previewClicked() { debugLog("Preview click!"); }

void VelkinImpl::reloadClicked() {
  debugLog("Reload click!");
  // In a later turn, so that the menu can finish closing.
  platform::DispatchQueue::main().async([webView = currentWebView.webView] { webView->reload(); });
}

void VelkinImpl::openClicked() {
  debugLog("Open click!");
  if (const auto url = currentWebView.webView->url()) platform::NSWorkspace::shared().open(*url);
}

void VelkinImpl::homeClicked() { handleReloadFromOrigin(); }

void VelkinImpl::quitClicked() {
  debugLog("Quit click!");
  platform::NSApp().exit(0);
}

void VelkinImpl::showViewAsPanel(NSPanel& panel, platform::NSPoint origin) {
  panel.delegate = this;
  panel.setFrameOrigin(origin);
  panel.setFloatingPanel(true);
  panel.makeKeyAndOrderFront();
}

std::unique_ptr<NSPanel> VelkinImpl::openPanel(const std::shared_ptr<PlaceController>& content,
                                               const char* title, double left, double below) {
  const auto screen = platform::NSScreen::main();
  if (!screen) return nullptr;
  auto panel = NSPanel::make(content->view().frame(),
                             NSPanel::nonactivatingPanel | NSPanel::titled | NSPanel::closable);
  panel->setContentViewController(content);
  panel->setTitle(title);
  showViewAsPanel(*panel, {screen->frame.midX() - left, screen->frame.midY() - below});
  return panel;
}

void VelkinImpl::aboutClicked() {
  aboutHostingController.reset();
  if (aboutPanel->isVisible()) return;
  debugLog("About click!");
  aboutHostingController = std::make_shared<PlaceController>(PagePlace{"About Velkin"});
  aboutHostingController->title = "Velkin";
  if (auto panel = openPanel(aboutHostingController, "Velkin - About", 192, 360))
    aboutPanel = std::move(panel);
}

void VelkinImpl::shortcutsClicked() {
  debugLog("Shortcuts click!");
  auto content = std::make_shared<PlaceController>(PagePlace{"Shortcuts", globalShortcutsNotice()});
  shortcutsHostingController = content;
  if (shortcutsPanel->isVisible()) return;
  if (auto panel = openPanel(content, "Velkin - Shortcuts", 240, 400)) shortcutsPanel = std::move(panel);
}

void VelkinImpl::appearanceClicked() {
  appearanceHostingController.reset();
  if (appearancePanel->isVisible()) return;
  const auto size = fromRawValue<AppearanceFontSize>(defaults.webViewZoom());
  debugLog("Appearance... click! " + std::string(appearanceCaseNames[static_cast<std::size_t>(size)]));
  appearanceHostingController = std::make_shared<PlaceController>(PagePlace{"Appearance"});
  if (auto panel = openPanel(appearanceHostingController, "Velkin - Appearance", 240, 400)) {
    appearancePanel = std::move(panel);
  }
}

void VelkinImpl::windowWillClose(NSPanel&) {
  if (aboutPanel->isVisible()) aboutHostingController.reset();
  if (shortcutsPanel->isVisible()) shortcutsHostingController.reset();
  if (appearancePanel->isVisible()) appearanceHostingController.reset();
}

}  // namespace velkin
