#pragma once

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "UserData/SharedState.h"

namespace velkin {

/// Whether the toolbar is shown, as the menu has it.
struct ToolbarCheckboxUIView {
  UserDefaultsHelper defaults = {};
  platform::ObservedObject<SharedState> sharedState;
  /// Turns it round.
  platform::Action action = {};
  platform::State<bool> isHovering{false};

  platform::View body() const;
};

}  // namespace velkin
