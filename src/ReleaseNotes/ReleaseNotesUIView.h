#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/State.h"
#include "Platform/View/View.h"
#include "ReleaseNotes/ReleaseNotesWebView.h"
#include "UserData/SharedState.h"
#include "Values/PageDelegates.h"

#include <memory>

namespace velkin {

/// What is new in this build, with a button to go on.
struct ReleaseNotesUIView {
  ReleaseNotesUIViewDelegate* delegate = nullptr;
  platform::ObservedObject<SharedState> sharedState;
  ReleaseNotesWebView notes = {};
  /// The button has the keyboard first: from inside the page no key leads to it.
  platform::State<bool> isDoneFocused{true};

  platform::View body() const;
};

}  // namespace velkin
