#pragma once

#include "Platform/View/ObservableObject.h"
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

  platform::View body() const;
};

}  // namespace velkin
