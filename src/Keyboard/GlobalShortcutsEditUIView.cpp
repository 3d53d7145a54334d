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
  const auto popUp = Name::popUpShortcut();
  const bool isGranted = GetEventDispatcherTarget().grantedTrigger(popUp.rawValue()).has_value();
  return VStack({.spacing = useSmallerFonts ? 4.0 : 8.0, .alignment = Alignment::leading},
                {Recorder("PopUp:", popUp), Recorder("SearchBar:", Name::searchBarShortcut()),
                 when(isGranted, desktopKeySettingsButton)});
}

}  // namespace velkin
