#pragma once

#include "Platform/NSNotificationCenter.h"
#include "Platform/View/ObservableObject.h"

namespace velkin {

/// A view that observes it is drawn anew when a global shortcut changes. Main thread.
class GlobalShortcutChanges : public platform::ObservableObject {
 public:
  GlobalShortcutChanges();

 private:
  platform::Connection token_;
};

}  // namespace velkin
