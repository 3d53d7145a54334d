#pragma once

#include "Platform/NSViewController.h"

namespace velkin {

/// How a view controller's view comes above another's, and goes. Main thread.
class NSViewControllerPresentationAnimator {
 public:
  virtual ~NSViewControllerPresentationAnimator() = default;
  virtual void animatePresentation(platform::NSViewController& presented,
                                   platform::NSViewController& presenting) = 0;
  virtual void animateDismissal(platform::NSViewController& presented,
                                platform::NSViewController& presenting) = 0;
};

/// In the middle of the presenting view, at its own size; stays there.
class CustomAnimator : public NSViewControllerPresentationAnimator {
 public:
  void animatePresentation(platform::NSViewController& presented,
                           platform::NSViewController& presenting) override {
    presenting.view().addSubview(presented.view(), presented.view().frame().size);
  }
  void animateDismissal(platform::NSViewController&, platform::NSViewController&) override {}
};

/// Over all of the presenting view.
class BasicPresentationAnimator : public NSViewControllerPresentationAnimator {
 public:
  void animatePresentation(platform::NSViewController& presented,
                           platform::NSViewController& presenting) override {
    presenting.view().addSubview(presented.view(), std::nullopt);
  }
  void animateDismissal(platform::NSViewController& presented,
                        platform::NSViewController& presenting) override {
    presenting.view().removeSubview(presented.view());
  }
};

}  // namespace velkin
