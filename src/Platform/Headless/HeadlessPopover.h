#pragma once

#include "Platform/NSPopover.h"

#include <string>
#include <utility>
#include <vector>

namespace platform {

class HeadlessPopover : public NSPopover {
 public:
  int showCount = 0;
  int closeCount = 0;

  NSSize contentSize() const override { return size_; }
  void setContentSize(NSSize size) override { size_ = size; }
  std::shared_ptr<NSViewController> contentViewController() const override { return controller_; }
  void setContentViewController(std::shared_ptr<NSViewController> controller) override {
    controller_ = std::move(controller);
    if (controller_) controller_->view();
  }
  bool isShown() const override { return isShown_; }
  void show(NSRect, NSStatusBarButton&, NSRectEdge) override {
    isShown_ = true;
    ++showCount;
  }
  void performClose() override {
    if (!isShown_) return;
    isShown_ = false;
    ++closeCount;
  }
  std::vector<std::string> notices;
  void showNotice(const std::string& text) override { notices.push_back(text); }
  /// As a user's click elsewhere.
  void clickOutside() {
    if (behavior == Behavior::transient) performClose();
  }

 private:
  NSSize size_;
  std::shared_ptr<NSViewController> controller_;
  bool isShown_ = false;
};

}  // namespace platform
