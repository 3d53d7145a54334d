#pragma once

#include "Platform/Headless/HeadlessApplication.h"
#include "Platform/Headless/HeadlessDesktop.h"
#include "Platform/Headless/HeadlessDialogs.h"
#include "Platform/Headless/HeadlessEventTarget.h"
#include "Platform/Headless/HeadlessImage.h"
#include "Platform/Headless/HeadlessPanel.h"
#include "Platform/Headless/HeadlessPasteboard.h"
#include "Platform/Headless/HeadlessPopover.h"
#include "Platform/Headless/HeadlessQueue.h"
#include "Platform/Headless/HeadlessStatusItem.h"
#include "Platform/Headless/HeadlessSystemServices.h"
#include "Platform/Headless/HeadlessTextView.h"
#include "Platform/Headless/HeadlessURLSession.h"
#include "Platform/Headless/HeadlessUserDefaults.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "Platform/Headless/HeadlessWebView.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSBundle.h"
#include "Platform/NSScreen.h"
#include "Platform/Platform.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// A complete desktop in memory: the unit tests' world. Installs itself for its lifetime. What a test wants
/// to see or to arrange is public.
class HeadlessPlatform : public Platform {
 public:
  HeadlessPlatform();
  ~HeadlessPlatform() override;
  HeadlessPlatform(const HeadlessPlatform&) = delete;
  HeadlessPlatform& operator=(const HeadlessPlatform&) = delete;

  HeadlessQueue queue;
  HeadlessApplication app;
  HeadlessWorkspace workspace;
  HeadlessSystemServices services;
  HeadlessPasteboard pasteboard;
  HeadlessDialogs openDialogs;
  HeadlessDistributedNotificationCenter distributedNotifications;
  NSBundle bundle;
  std::optional<NSAppearance> appearance = NSAppearance{NSAppearanceNameAqua};
  /// The first one is the main screen.
  std::vector<NSScreen> attachedScreens = {{{{0, 0}, {1920, 1080}}, {{0, 0}, {1920, 1050}}}};
  HeadlessUserDefaults userDefaults;
  /// In its place, if there is one.
  NSUserDefaults* otherUserDefaults = nullptr;
  HeadlessURLSession urlSession;
  HeadlessEventTarget keyboard;
  /// Nothing: no layout writes ASCII.
  std::optional<HeadlessInputSource::Layout> keyboardLayout = HeadlessInputSource::us();
  std::optional<std::string> lastFatalError;
  std::filesystem::path dataFolder;
  /// What was asked for, and in which size; and the files that are no pictures.
  std::vector<std::pair<std::string, NSSize>> imagesAskedFor;
  std::set<std::string> brokenImages;

  /// What the program has made, in order. They live as long as their owners keep them.
  std::vector<HeadlessStatusItem*> statusItems;
  std::vector<HeadlessPopover*> popovers;
  std::vector<HeadlessPanel*> panels;
  std::vector<HeadlessWebView*> webViews;
  std::vector<HeadlessTextView*> textViews;

  DispatchQueue& mainQueue() override { return queue; }
  double now() const override { return queue.now(); }
  NSApplication& application() override { return app; }
  const NSBundle& mainBundle() const override { return bundle; }
  std::filesystem::path userDataFolder() const override { return dataFolder; }
  NSWorkspace& sharedWorkspace() override { return workspace; }
  SystemServices& systemServices() override { return services; }
  NSPasteboard& generalPasteboard() override { return pasteboard; }
  Dialogs& dialogs() override { return openDialogs; }
  NSDistributedNotificationCenter& distributedNotificationCenter() override {
    return distributedNotifications;
  }
  std::optional<NSAppearance> currentAppearance() const override { return appearance; }
  std::optional<NSScreen> mainScreen() const override;
  std::vector<NSScreen> screens() const override { return attachedScreens; }
  std::unique_ptr<NSStatusItem> makeStatusItem(double length) override;
  std::unique_ptr<NSPopover> makePopover() override;
  std::unique_ptr<NSPanel> makePanel(NSRect contentRect, std::uint32_t styleMask) override;
  std::unique_ptr<WKWebView> makeWebView(NSRect frame, WKWebViewConfiguration configuration) override;
  std::unique_ptr<NSHostingView> makeHostingView(View root) override;
  std::unique_ptr<NSTextView> makeTextView() override;
  void loadImage(const std::string& path, NSSize size,
                 std::function<void(std::shared_ptr<NSImage>)> completion) override;
  std::string pathOfImage(const std::string& name) const override { return "/images/" + name; }
  NSUserDefaults& standardUserDefaults() override {
    return otherUserDefaults != nullptr ? *otherUserDefaults : userDefaults;
  }
  NSURLSession& sharedURLSession() override { return urlSession; }
  EventTarget& eventDispatcherTarget() override { return keyboard; }
  std::unique_ptr<TISInputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() override;
  void noteFatalError(std::string_view message) noexcept override;
  std::optional<std::string> takeLastFatalError() override;
};

}  // namespace platform
