#include "Platform/Headless/HeadlessStatusItem.h"

#include "Platform/NSApplication.h"

namespace platform {

void HeadlessStatusBarButton::click(NSEvent::EventType type) {
  if ((sendActionOn & NSEvent::mask(type)) == 0 || !action) return;
  NSApp().currentEvent = NSEvent{type, {}};
  action();
  NSApp().currentEvent.reset();
}

void HeadlessStatusItem::closeMenu(NSMenuItem* item) {
  const auto shown = poppedUp.back();
  if (item != nullptr && item->isEnabled() && item->action) item->action();
  if (shown->delegate != nullptr) shown->delegate->menuDidClose(*shown);
}

}  // namespace platform
