#pragma once

#include "Platform/NSEvent.h"
#include "Platform/NSStatusItem.h"

#include <memory>
#include <vector>

namespace platform {

class HeadlessStatusBarButton : public NSStatusBarButton {
 public:
  StatusImage image;

  void setImage(StatusImage statusImage) override { image = std::move(statusImage); }
  NSRect bounds() const override { return {{0, 0}, {28, 22}}; }

  /// As a user's click: sends the action if it was asked for this kind of event.
  void click(NSEvent::EventType type);
};

class HeadlessStatusItem : public NSStatusItem {
 public:
  explicit HeadlessStatusItem(double itemLength) : length_(itemLength) {}

  HeadlessStatusBarButton statusButton;
  std::shared_ptr<NSMenu> preparedMenu;
  /// Every menu that was put up, the last one at the end.
  std::vector<std::shared_ptr<NSMenu>> poppedUp;

  double length() const override { return length_; }
  NSStatusBarButton* button() override { return &statusButton; }
  void prepareMenu(std::shared_ptr<NSMenu> statusMenu) override { preparedMenu = std::move(statusMenu); }
  void popUpStatusItemMenu(std::shared_ptr<NSMenu> statusMenu) override {
    poppedUp.push_back(std::move(statusMenu));
  }

  /// As a user's choosing `item` in the menu that is up, or dismissing it with nullptr.
  void closeMenu(NSMenuItem* item);

 private:
  double length_;
};

}  // namespace platform
