#include "ReleaseNotes/ReleaseNotesUIView.h"

namespace velkin {

platform::View ReleaseNotesUIView::body() const {
  using namespace platform;
  return VStack({.spacing = 0, .alignment = Alignment::fill},
                {View(notes).frame({.maxWidth = infinity, .maxHeight = infinity}), Divider(),
                 HStack({Spacer(), Button(
                                       "Done", [target = delegate] { target->didClickReleaseNotesDone(); },
                                       ButtonStyle::prominent)
                                       .focused(isDoneFocused.binding())})
                     .padding(12)});
}

}  // namespace velkin
