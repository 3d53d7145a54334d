#include "Platform/Platform.h"

#include "Platform/CarbonEvents.h"
#include "Platform/DispatchQueue.h"
#include "Platform/FatalError.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSApplication.h"
#include "Platform/NSBundle.h"
#include "Platform/NSDistributedNotificationCenter.h"
#include "Platform/NSHostingController.h"
#include "Platform/NSPanel.h"
#include "Platform/NSPasteboard.h"
#include "Platform/NSPopover.h"
#include "Platform/NSScreen.h"
#include "Platform/NSStatusItem.h"
#include "Platform/NSTextView.h"
#include "Platform/NSWorkspace.h"
#include "Platform/SystemServices.h"
#include "Platform/TextInputSources.h"
#include "Platform/WKWebView.h"

#include <atomic>

namespace platform {

namespace {

std::atomic<Platform*> installedPlatform = nullptr;

}  // namespace

Platform& Platform::current() {
  auto* platform = installed();
  if (platform == nullptr) fatalError("No platform is installed");
  return *platform;
}

Platform* Platform::installed() noexcept { return installedPlatform.load(); }

void Platform::install(Platform* platform) noexcept { installedPlatform.store(platform); }

DispatchQueue& DispatchQueue::main() { return Platform::current().mainQueue(); }

double now() { return Platform::current().now(); }

NSApplication& NSApp() { return Platform::current().application(); }

const NSBundle& NSBundle::main() { return Platform::current().mainBundle(); }

NSPasteboard& NSPasteboard::generalPasteboard() { return Platform::current().generalPasteboard(); }

NSWorkspace& NSWorkspace::shared() { return Platform::current().sharedWorkspace(); }

SystemServices& SystemServices::shared() { return Platform::current().systemServices(); }

bool SMLoginItemSetEnabled(const std::string& identifier, bool isEnabled) {
  return SystemServices::shared().setLoginItemEnabled(identifier, isEnabled);
}

std::vector<CGWindow> CGWindowListCopyWindowInfo() { return SystemServices::shared().windowsOnScreen(); }

NSDistributedNotificationCenter& NSDistributedNotificationCenter::defaultCenter() {
  return Platform::current().distributedNotificationCenter();
}

std::optional<NSAppearance> NSAppearance::currentAppearance() {
  return Platform::current().currentAppearance();
}

bool NSAppearance::isDarkNow() {
  const auto appearance = currentAppearance();
  return appearance && appearance->isDark();
}

std::optional<NSScreen> NSScreen::main() { return Platform::current().mainScreen(); }

std::vector<NSScreen> NSScreen::screens() { return Platform::current().screens(); }

std::unique_ptr<NSStatusItem> NSStatusBar::statusItem(double length) {
  return Platform::current().makeStatusItem(length);
}

std::unique_ptr<NSPopover> NSPopover::make() { return Platform::current().makePopover(); }

std::unique_ptr<NSPanel> NSPanel::make(NSRect contentRect, std::uint32_t styleMask) {
  return Platform::current().makePanel(contentRect, styleMask);
}

std::unique_ptr<WKWebView> WKWebView::make(NSRect frame, WKWebViewConfiguration configuration) {
  return Platform::current().makeWebView(frame, std::move(configuration));
}

std::unique_ptr<NSHostingView> NSHostingView::make(View root) {
  return Platform::current().makeHostingView(std::move(root));
}

std::unique_ptr<NSTextView> NSTextView::make() { return Platform::current().makeTextView(); }

EventTarget& GetEventDispatcherTarget() { return Platform::current().eventDispatcherTarget(); }

std::unique_ptr<TISInputSource> TISCopyCurrentASCIICapableKeyboardLayoutInputSource() {
  return Platform::current().copyCurrentASCIICapableKeyboardLayoutInputSource();
}

}  // namespace platform
