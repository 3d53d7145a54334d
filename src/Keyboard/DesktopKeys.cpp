#include "Keyboard/DesktopKeys.h"

#include "Keyboard/VirtualKeyCode.h"
#include "Platform/NSApplication.h"

#include <optional>

namespace velkin {

using platform::NSEvent;

namespace {

constexpr std::uint32_t allModifiers =
    NSEvent::commandFlag | NSEvent::optionFlag | NSEvent::controlFlag | NSEvent::shiftFlag;

}  // namespace

DesktopKeys::DesktopKeys(QKKeyboardShortcutHelperDelegate& delegate, const platform::NSPopover& popover)
    : delegate_(delegate),
      popover_(popover),
      monitor_(NSEvent::addLocalMonitorForEvents(NSEvent::mask(NSEvent::EventType::keyDown),
                                                 [this](const NSEvent& event) -> std::optional<NSEvent> {
                                                   if (keyDown(event)) return std::nullopt;
                                                   return event;
                                                 })) {}

bool DesktopKeys::keyDown(const NSEvent& event) {
  const auto modifiers = event.modifierFlags & allModifiers;
  auto& app = platform::NSApp();
  if (modifiers == NSEvent::optionFlag && (event.keyCode == key::left || event.keyCode == key::right)) {
    // There the cursor goes by words, or to the line's ends.
    if (app.isTextBeingEdited() || !popover_.isShown()) return false;
    if (event.keyCode == key::left) {
      delegate_.handleBack();
    } else {
      delegate_.handleForward();
    }
    return true;
  }
  if (modifiers != NSEvent::commandFlag) return false;
  if (event.keyCode == key::deleteKey) return app.sendAction("deleteWordBackward:");
  return event.keyCode == key::forwardDelete && app.sendAction("deleteWordForward:");
}

}  // namespace velkin
