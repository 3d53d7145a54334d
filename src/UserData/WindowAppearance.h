#pragma once

#include "Platform/NSNotificationCenter.h"
#include "Platform/View/ObservableObject.h"

namespace velkin {

/// A view that observes it is drawn anew when the window's stored size or the pages' zoom changes, wherever
/// that was done: in a panel, or by a key. Main thread.
class WindowAppearance : public platform::ObservableObject {
 public:
  WindowAppearance();

  /// To be called after a size or the zoom was stored.
  static void didChange();

 private:
  platform::Connection token_;
};

}  // namespace velkin
