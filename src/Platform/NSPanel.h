#pragma once

#include "Platform/Geometry.h"
#include "Platform/NSViewController.h"

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

class NSPanel;

/// Told of a panel's closing. Main thread.
class NSWindowDelegate {
 public:
  virtual ~NSWindowDelegate() = default;
  virtual void windowWillClose(NSPanel& panel) = 0;
};

/// A small window beside the popover. Main thread.
class NSPanel {
 public:
  static constexpr std::uint32_t titled = 1;
  static constexpr std::uint32_t closable = 2;
  static constexpr std::uint32_t nonactivatingPanel = 128;

  /// `contentRect` in screen coordinates.
  static std::unique_ptr<NSPanel> make(NSRect contentRect, std::uint32_t styleMask);
  /// An empty one, for a field that waits for its first real panel.
  static std::unique_ptr<NSPanel> make() { return make({}, 0); }
  virtual ~NSPanel() = default;

  NSWindowDelegate* delegate = nullptr;

  virtual NSRect frame() const = 0;
  virtual void setFrameOrigin(NSPoint origin) = 0;
  virtual std::string title() const = 0;
  virtual void setTitle(std::string title) = 0;
  virtual std::shared_ptr<NSViewController> contentViewController() const = 0;
  virtual void setContentViewController(std::shared_ptr<NSViewController> controller) = 0;
  /// Keeps it above other windows.
  virtual void setFloatingPanel(bool isFloating) = 0;
  virtual bool isVisible() const = 0;
  /// Shows it and gives it the keyboard.
  virtual void makeKeyAndOrderFront() = 0;
  /// Tells the delegate and takes it off the screen.
  virtual void close() = 0;
};

}  // namespace platform
