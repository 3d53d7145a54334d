#pragma once

#include "Platform/NSViewController.h"
#include "Platform/View/ViewHost.h"

#include <memory>
#include <utility>

namespace platform {

/// A platform view that shows a description and keeps it true.
class NSHostingView : public NSView {
 public:
  /// By the installed platform.
  static std::unique_ptr<NSHostingView> make(View root);
  virtual ViewHost& host() noexcept = 0;
};

/// Puts a described view into a window.
template <class V>
class NSHostingController : public NSViewController {
 public:
  explicit NSHostingController(V view) : rootView(std::move(view)) {}

  /// As it was given; what has changed since is in its `State`.
  const V rootView;

  NSHostingView& hostingView() {
    view();
    return *hostingView_;
  }

 protected:
  void loadView() override { hostingView_ = NSHostingView::make(View(rootView)); }
  NSView& loadedView() override { return *hostingView_; }

 private:
  std::unique_ptr<NSHostingView> hostingView_;
};

}  // namespace platform
