#include "Keyboard/GlobalShortcutsEditUIView.h"

#include "Keyboard/GlobalShortcutsNoticeUIView.h"
#include "Keyboard/Recorder.h"
#include "Platform/CarbonEvents.h"

namespace velkin {

platform::View GlobalShortcutsEditUIView::body() const {
  using namespace platform;
  using KeyboardShortcuts::Name;
  using KeyboardShortcuts::Recorder;
  // A recorder for keys that no one hands out would be a promise.
  if (GetEventDispatcherTarget().notice()) return globalShortcutsNotice();
  return VStack({.spacing = useSmallerFonts ? 4.0 : 8.0, .alignment = Alignment::leading},
                {Recorder("PopUp:", Name::popUpShortcut()),
                 Recorder("SearchBar:", Name::searchBarShortcut())});
}

}  // namespace velkin
