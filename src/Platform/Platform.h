#pragma once

#include "Platform/Geometry.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Dialogs;
class DispatchQueue;
class EventTarget;
class NSApplication;
class NSBundle;
class NSDistributedNotificationCenter;
class NSHostingView;
class NSImage;
class NSPanel;
class NSPasteboard;
class NSPopover;
class NSStatusItem;
class NSTextView;
class NSURLSession;
class NSUserDefaults;
class NSWorkspace;
class SystemServices;
class TISInputSource;
class View;
class WKWebView;
struct NSAppearance;
struct NSScreen;
struct WKWebViewConfiguration;

/// The desktop below the program: what the static accessors of the seam's classes ask. One is installed for
/// the life of the process (the real one by `main`, the in-memory one by a test's fixture).
class Platform {
 public:
  virtual ~Platform() = default;

  /// The installed platform; a fatal error if there is none.
  static Platform& current();
  static Platform* installed() noexcept;
  /// Installs `platform`, which must outlive everything that asks for it; nullptr uninstalls.
  static void install(Platform* platform) noexcept;

  virtual DispatchQueue& mainQueue() = 0;
  /// Seconds since 1970. Any thread.
  virtual double now() const = 0;
  virtual NSApplication& application() = 0;
  virtual const NSBundle& mainBundle() const = 0;
  virtual NSUserDefaults& standardUserDefaults() = 0;
  /// The folder for what the user makes with the program. It needn't exist. Empty: nothing is to be kept.
  virtual std::filesystem::path userDataFolder() const = 0;
  virtual NSWorkspace& sharedWorkspace() = 0;
  virtual SystemServices& systemServices() = 0;
  virtual NSPasteboard& generalPasteboard() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual NSDistributedNotificationCenter& distributedNotificationCenter() = 0;

  /// Any thread.
  virtual std::optional<NSAppearance> currentAppearance() const = 0;
  virtual std::optional<NSScreen> mainScreen() const = 0;
  virtual std::vector<NSScreen> screens() const = 0;

  virtual std::unique_ptr<NSStatusItem> makeStatusItem(double length) = 0;
  virtual std::unique_ptr<NSPopover> makePopover() = 0;
  virtual std::unique_ptr<NSPanel> makePanel(NSRect contentRect, std::uint32_t styleMask) = 0;
  virtual std::unique_ptr<WKWebView> makeWebView(NSRect frame, WKWebViewConfiguration configuration) = 0;
  virtual std::unique_ptr<NSHostingView> makeHostingView(View root) = 0;
  virtual std::unique_ptr<NSTextView> makeTextView() = 0;
  /// See `NSImage::contentsOf`.
  virtual void loadImage(const std::string& path, NSSize size,
                         std::function<void(std::shared_ptr<NSImage>)> completion) = 0;
  /// The file of an image of the program.
  virtual std::string pathOfImage(const std::string& name) const = 0;
  virtual NSURLSession& sharedURLSession() = 0;

  virtual EventTarget& eventDispatcherTarget() = 0;
  virtual std::unique_ptr<TISInputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() = 0;

  /// Stores the settings that a `Together` keeps back, and remembers beyond the end of this process that it
  /// ended by a fatal error. Any thread.
  virtual void noteFatalError(std::string_view message) noexcept = 0;
  /// What `noteFatalError` of the process before this one remembered, and forgets it.
  virtual std::optional<std::string> takeLastFatalError() = 0;
};

}  // namespace platform
