#pragma once

#include "Platform/NSNotificationCenter.h"
#include "Platform/View/ObservableObject.h"

namespace velkin {

/// The switch that offers the other views beside chat. A view that observes it is drawn anew when the switch
/// is turned, wherever it was turned. Main thread.
class AdditionalViews : public platform::ObservableObject {
 public:
  AdditionalViews();

  bool get() const;
  /// Stores it and tells every view.
  void set(bool isEnabled) const;

 private:
  platform::Connection token_;
};

}  // namespace velkin
