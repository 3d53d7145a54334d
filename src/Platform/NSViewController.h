#pragma once

#include "Platform/NSView.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace platform {

/// Owns a view and makes it when it is first asked for.
class NSViewController {
 public:
  NSViewController() = default;
  virtual ~NSViewController() = default;
  NSViewController(const NSViewController&) = delete;
  NSViewController& operator=(const NSViewController&) = delete;

  std::string title;
  /// Who presents this controller above itself; nullptr for one that stands in a window of its own.
  NSViewController* presentingViewController = nullptr;

  /// Makes the view at the first call.
  NSView& view() {
    if (!isViewLoaded_) {
      isViewLoaded_ = true;
      loadView();
    }
    return loadedView();
  }
  bool isViewLoaded() const noexcept { return isViewLoaded_; }

  /// Shows `child` in the middle of this controller's view, for as long as this controller lives.
  void addChild(std::shared_ptr<NSViewController> child, NSSize size) {
    view().addSubview(child->view(), size);
    children_.push_back(std::move(child));
  }
  const std::vector<std::shared_ptr<NSViewController>>& children() const noexcept { return children_; }

  /// Ends the presentation of `controller`, which this controller presents.
  virtual void dismiss(NSViewController& controller) { controller.presentingViewController = nullptr; }

 protected:
  virtual void loadView() = 0;
  virtual NSView& loadedView() = 0;

 private:
  bool isViewLoaded_ = false;
  std::vector<std::shared_ptr<NSViewController>> children_;
};

}  // namespace platform
