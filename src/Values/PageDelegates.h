#pragma once

namespace velkin {

// What the pages that lead in and around ask of the controller. Main thread.

class ReleaseNotesUIViewDelegate {
 public:
  virtual ~ReleaseNotesUIViewDelegate() = default;
  /// The end of the reading.
  virtual void didClickReleaseNotesDone() = 0;
};

}  // namespace velkin
