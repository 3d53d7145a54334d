#pragma once

#include "Platform/Gtk/GtkAppearance.h"
#include "Platform/Gtk/GtkApplication.h"
#include "Platform/Gtk/GtkDesktop.h"
#include "Platform/Gtk/GtkDialogs.h"
#include "Platform/Gtk/GtkMainQueue.h"
#include "Platform/Gtk/GtkPasteboard.h"
#include "Platform/Gtk/GtkSystemServices.h"
#include "Platform/Gtk/HotKeyGrabs.h"
#include "Platform/NSBundle.h"
#include "Platform/Platform.h"

#include <memory>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

class GtkEventTarget;
class PopoverWindow;
class StatusNotifierItem;
class WebEngine;

/// The real desktop: GTK 4, WebKitGTK, D-Bus and X11. The tray icon comes first; the toolkit and everything
/// that takes time starts from the main loop after that. Main thread.
class GtkPlatform : public Platform {
 public:
  GtkPlatform();
  ~GtkPlatform() override;
  GtkPlatform(const GtkPlatform&) = delete;
  GtkPlatform& operator=(const GtkPlatform&) = delete;

  /// The one that is installed.
  static GtkPlatform& shared();

  DispatchQueue& mainQueue() override { return queue_; }
  double now() const override;
  NSApplication& application() override { return application_; }
  const NSBundle& mainBundle() const override { return bundle_; }
  NSUserDefaults& standardUserDefaults() override;
  std::filesystem::path userDataFolder() const override;
  NSURLSession& sharedURLSession() override;
  NSWorkspace& sharedWorkspace() override { return workspace_; }
  SystemServices& systemServices() override { return services_; }
  NSPasteboard& generalPasteboard() override { return pasteboard_; }
  Dialogs& dialogs() override { return dialogs_; }
  NSDistributedNotificationCenter& distributedNotificationCenter() override { return notifications_; }
  std::optional<NSAppearance> currentAppearance() const override;
  std::optional<NSScreen> mainScreen() const override;
  std::vector<NSScreen> screens() const override;
  std::unique_ptr<NSStatusItem> makeStatusItem(double length) override;
  std::unique_ptr<NSPopover> makePopover() override;
  std::unique_ptr<NSPanel> makePanel(NSRect contentRect, std::uint32_t styleMask) override;
  std::unique_ptr<WKWebView> makeWebView(NSRect frame, WKWebViewConfiguration configuration) override;
  std::unique_ptr<NSHostingView> makeHostingView(View root) override;
  std::unique_ptr<NSTextView> makeTextView() override;
  void loadImage(const std::string& path, NSSize size,
                 std::function<void(std::shared_ptr<NSImage>)> completion) override;
  std::string pathOfImage(const std::string& name) const override;
  EventTarget& eventDispatcherTarget() override;
  std::unique_ptr<TISInputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() override;
  void noteFatalError(std::string_view message) noexcept override;
  std::optional<std::string> takeLastFatalError() override;

  /// Starts the toolkit now if it doesn't run yet. Without a display the process ends with a message.
  void startToolkit();
  void whenToolkitReady(std::function<void()> work);
  WebEngine& webEngine();

 private:
  std::unique_ptr<HotKeyGrabs> makeHotKeyGrabs(HotKeyGrabs::OnKey onKey);
  bool hasTray() const;
  void awaitTray();
  void trayChanged(bool hasTray);
  void colourIcon();
  void tellThatThereIsNoTray();

  GtkMainQueue queue_;
  GtkApplicationHost application_;
  NSBundle bundle_;
  GtkWorkspace workspace_;
  GtkSystemServices services_;
  GtkPasteboard pasteboard_;
  GtkDialogs dialogs_;
  BusNotificationCenter notifications_;
  GtkAppearance appearance_;
  std::unique_ptr<NSUserDefaults> defaults_;
  std::unique_ptr<NSURLSession> urlSession_;
  std::unique_ptr<WebEngine> webEngine_;
  std::unique_ptr<GtkEventTarget> eventTarget_;
  std::vector<std::function<void()>> waitingForToolkit_;
  std::unique_ptr<Timer> trayTimer_;
  std::unique_ptr<Timer> startTimer_;
  /// Set while the notice is up.
  std::function<void()> takeNoTrayNoticeBack_;
  StatusNotifierItem* statusItem_ = nullptr;
  PopoverWindow* popover_ = nullptr;
  bool isToolkitRunning_ = false;
  bool hasToldOfNoTray_ = false;
};

}  // namespace platform
