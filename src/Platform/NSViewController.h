#pragma once

#include "Platform/NSView.h"

#include <memory>
#include <string>

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

  /// Ends the presentation of `controller`, which this controller presents.
  virtual void dismiss(NSViewController& controller) { controller.presentingViewController = nullptr; }

 protected:
  virtual void loadView() = 0;
  virtual NSView& loadedView() = 0;

 private:
  bool isViewLoaded_ = false;
};

}  // namespace platform
