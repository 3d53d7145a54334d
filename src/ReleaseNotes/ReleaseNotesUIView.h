#pragma once

#include "Platform/View/ObservableObject.h"
#include "Platform/View/View.h"
#include "ReleaseNotes/ReleaseNotesWebView.h"
#include "UserData/SharedState.h"

#include <memory>

namespace velkin {

/// Told of the end of the reading. Main thread.
class ReleaseNotesUIViewDelegate {
 public:
  virtual ~ReleaseNotesUIViewDelegate() = default;
  virtual void didClickReleaseNotesDone() = 0;
};

/// What is new in this build, with a button to go on.
struct ReleaseNotesUIView {
  ReleaseNotesUIViewDelegate* delegate = nullptr;
  platform::ObservedObject<SharedState> sharedState;
  ReleaseNotesWebView notes = {};

  platform::View body() const;
};

}  // namespace velkin
