#pragma once

#include "Platform/Geometry.h"
#include "Platform/NSStatusItem.h"
#include "Platform/NSViewController.h"

#include <memory>
#include <string>

namespace platform {

enum class NSRectEdge : int { minX = 0, minY = 1, maxX = 2, maxY = 3 };

/// The window at the tray icon. Main thread.
class NSPopover {
 public:
  /// Who closes it: the program alone, or the platform too, when the user goes elsewhere.
  enum class Behavior : int { applicationDefined = 0, transient = 1 };

  static std::unique_ptr<NSPopover> make();
  virtual ~NSPopover() = default;

  Behavior behavior = Behavior::applicationDefined;

  /// In points, as asked for; what is on screen is no larger than the work area.
  virtual NSSize contentSize() const = 0;
  virtual void setContentSize(NSSize size) = 0;

  virtual std::shared_ptr<NSViewController> contentViewController() const = 0;
  /// Loads the controller's view; an empty one clears the window.
  virtual void setContentViewController(std::shared_ptr<NSViewController> controller) = 0;

  virtual bool isShown() const = 0;
  /// Shows it at `edge` of `rect`, which lies in `view`.
  virtual void show(NSRect rect, NSStatusBarButton& view, NSRectEdge edge) = 0;
  /// Closes it, if nothing that the user has open in it stands against that.
  virtual void performClose() = 0;
  /// Says something in passing, above the content. Nothing is to be answered.
  virtual void showNotice(const std::string& text) = 0;
};

}  // namespace platform
