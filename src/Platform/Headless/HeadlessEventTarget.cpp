#include "Platform/Headless/HeadlessEventTarget.h"

#include <algorithm>
#include <utility>

namespace platform {

tl::expected<EventHandlerRef, OSStatus> HeadlessEventTarget::InstallEventHandler(
    Handler handler, std::span<const EventTypeSpec> types) {
  if (!installsHandlers) return tl::unexpected(eventHotKeyInvalidErr);
  return EventTarget::InstallEventHandler(std::move(handler), types);
}

tl::expected<EventHotKeyRef, OSStatus> HeadlessEventTarget::RegisterEventHotKey(HotKeyCombination combination,
                                                                                EventHotKeyID id) {
  if (isHeldByAnother(combination)) return tl::unexpected(eventHotKeyExistsErr);
  registrations.emplace(++lastRef_, Registration{combination, id});
  if (onChange) onChange();
  return lastRef_;
}

OSStatus HeadlessEventTarget::UnregisterEventHotKey(EventHotKeyRef hotKey) {
  if (registrations.erase(hotKey) == 0) return eventHotKeyInvalidErr;
  if (onChange) onChange();
  return noErr;
}

bool HeadlessEventTarget::isRegistered(HotKeyCombination combination) const {
  return std::any_of(registrations.begin(), registrations.end(),
                     [&](const auto& entry) { return entry.second.combination == combination; });
}

int HeadlessEventTarget::sendHotKeys(HotKeyCombination combination, std::uint32_t kind) {
  int told = 0;
  const auto present = registrations;
  for (const auto& [ref, registration] : present) {
    if (registration.combination != combination) continue;
    sendEvent({.kind = kind, .hotKeyID = registration.id});
    ++told;
  }
  return told;
}

HeadlessInputSource::Layout HeadlessInputSource::us() {
  return {{{0x00, "a"},
           {0x02, "d"},
           {0x05, "g"},
           {0x06, "z"},
           {0x0F, "r"},
           {0x10, "y"},
           {0x11, "t"},
           {0x12, "1"},
           {0x23, "p"},
           {0x2B, ","},
           {0x52, "0"}}};
}

tl::expected<std::string, OSStatus> HeadlessInputSource::UCKeyTranslate(std::uint16_t keyCode) const {
  if (layout_.status != noErr) return tl::unexpected(layout_.status);
  const auto found = layout_.characters.find(keyCode);
  return found == layout_.characters.end() ? std::string() : found->second;
}

}  // namespace platform
