#pragma once

#include "Platform/NSPanel.h"

#include <utility>

namespace platform {

class HeadlessPanel : public NSPanel {
 public:
  HeadlessPanel(NSRect contentRect, std::uint32_t mask) : styleMask(mask), frame_(contentRect) {}

  const std::uint32_t styleMask;
  bool isFloating = false;

  NSRect frame() const override { return frame_; }
  void setFrameOrigin(NSPoint origin) override { frame_.origin = origin; }
  std::string title() const override { return title_; }
  void setTitle(std::string title) override { title_ = std::move(title); }
  std::shared_ptr<NSViewController> contentViewController() const override { return controller_; }
  void setContentViewController(std::shared_ptr<NSViewController> controller) override {
    controller_ = std::move(controller);
    if (controller_) controller_->view();
  }
  void setFloatingPanel(bool floating) override { isFloating = floating; }
  bool isVisible() const override { return isVisible_; }
  void makeKeyAndOrderFront() override { isVisible_ = true; }
  void close() override {
    if (isVisible_ && delegate != nullptr) delegate->windowWillClose(*this);
    isVisible_ = false;
  }

 private:
  NSRect frame_;
  std::string title_;
  std::shared_ptr<NSViewController> controller_;
  bool isVisible_ = false;
};

}  // namespace platform
