#pragma once

#include "Platform/Geometry.h"
#include "Platform/NSMenu.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace platform {

/// The image of a status item: one of the program's own, by name, at a size in points. A template is a shape
/// that the desktop colours as its panel needs.
struct StatusImage {
  std::string name;
  NSSize size;
  bool isTemplate = false;
  bool operator==(const StatusImage&) const = default;
};

/// What a user clicks in the tray.
class NSStatusBarButton {
 public:
  virtual ~NSStatusBarButton() = default;

  virtual void setImage(StatusImage image) = 0;
  /// Called for the events of `sendActionOn`, with the event as the application's current one.
  std::function<void()> action;
  /// A mask of `NSEvent::mask` bits.
  std::uint64_t sendActionOn = 0;

  /// The button's own rectangle, from (0, 0).
  virtual NSRect bounds() const = 0;
};

/// An entry in the desktop's tray.
class NSStatusItem {
 public:
  virtual ~NSStatusItem() = default;

  virtual double length() const = 0;
  /// nullptr where the desktop gives an item no button.
  virtual NSStatusBarButton* button() = 0;

  /// The menu that a click of any kind would show; none here, since the program tells left from right.
  std::shared_ptr<NSMenu> menu;

  /// The menu that the right click will put up: desktops that draw the menu themselves want to know it
  /// before.
  virtual void prepareMenu(std::shared_ptr<NSMenu> menu) = 0;
  /// Puts `menu` up at the item. Where the desktop has put it up already, there is nothing left to do.
  virtual void popUpStatusItemMenu(std::shared_ptr<NSMenu> menu) = 0;
};

/// The desktop's tray.
class NSStatusBar {
 public:
  /// `length` in points.
  std::unique_ptr<NSStatusItem> statusItem(double length);
};

}  // namespace platform
