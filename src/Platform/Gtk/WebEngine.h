#pragma once

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PopoverWindow.h"
#include "Platform/SitePermissions.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

/// What all web views share: the store of cookies and data, downloads, permissions, and the popover that
/// shows their notices. Made with the first web view. Main thread.
class WebEngine {
 public:
  explicit WebEngine(PopoverWindow& (*popoverOfProgram)());
  ~WebEngine();
  WebEngine(const WebEngine&) = delete;
  WebEngine& operator=(const WebEngine&) = delete;

  /// Which dictionaries a user of these languages (as the locale names them, the dearest first) may have.
  static std::vector<std::string> spellingLanguages(const char* const* names);
  /// True if web processes can be locked up as they must be; otherwise `reason` says why not.
  static bool canSandbox(std::string& reason);

  WebKitNetworkSession* session(bool isPersistent);
  /// For isolated pages: nothing is kept, and every way out ends at a proxy that isn't there, so that no name
  /// is looked up either.
  WebKitNetworkSession* sessionToNowhere();
  WebKitWebContext* context() { return context_.get(); }
  /// Of isolated pages.
  WebKitWebContext* isolatedContext();
  /// Settings of one view's own.
  GObjectPtr<WebKitSettings> makeSettings() const;

  /// Decides on a download that a page began: calls `start` if it may go on, at once or later.
  std::function<void(WebKitDownload* download, std::function<void()> start)> admitDownload =
      [](WebKitDownload*, const std::function<void()>& start) { start(); };

  SitePermissions& permissions() noexcept { return permissions_; }
  PopoverWindow& popover() { return popover_(); }

  /// A notice at the foot of the popover.
  void notify(const std::string& text) { popover().toasts().show(text); }

 private:
  void watchDownloads(WebKitNetworkSession* session);
  void downloadStarted(WebKitDownload* download);

  PopoverWindow& (*popover_)();
  SitePermissions permissions_;
  GObjectPtr<WebKitWebContext> context_;
  GObjectPtr<WebKitWebContext> isolatedContext_;
  GObjectPtr<WebKitNetworkSession> persistent_;
  GObjectPtr<WebKitNetworkSession> ephemeral_;
  GObjectPtr<WebKitNetworkSession> nowhere_;
};

}  // namespace platform
