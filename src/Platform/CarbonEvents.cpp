#include "Platform/CarbonEvents.h"

#include <algorithm>
#include <utility>

namespace platform {

std::uint32_t GetEventKind(const CarbonEvent& event) noexcept { return event.kind; }

EventTarget::Entry* EventTarget::find(EventHandlerRef handler) {
  const auto found = std::find_if(handlers_.begin(), handlers_.end(),
                                  [&](const auto& entry) { return entry.ref == handler; });
  return found == handlers_.end() ? nullptr : &*found;
}

tl::expected<EventHandlerRef, OSStatus> EventTarget::InstallEventHandler(
    Handler handler, std::span<const EventTypeSpec> types) {
  handlers_.push_back({++lastHandler_, std::move(handler), {types.begin(), types.end()}});
  return lastHandler_;
}

void EventTarget::RemoveEventHandler(EventHandlerRef handler) {
  std::erase_if(handlers_, [&](const auto& entry) { return entry.ref == handler; });
}

void EventTarget::AddEventTypesToHandler(EventHandlerRef handler, std::span<const EventTypeSpec> types) {
  RemoveEventTypesFromHandler(handler, types);
  if (auto* entry = find(handler)) entry->types.insert(entry->types.end(), types.begin(), types.end());
}

void EventTarget::RemoveEventTypesFromHandler(EventHandlerRef handler, std::span<const EventTypeSpec> types) {
  auto* entry = find(handler);
  if (entry == nullptr) return;
  std::erase_if(entry->types,
                [&](const auto& type) { return std::find(types.begin(), types.end(), type) != types.end(); });
}

bool EventTarget::isWanted(EventTypeSpec type) const {
  return std::any_of(handlers_.begin(), handlers_.end(), [&](const auto& entry) {
    return std::find(entry.types.begin(), entry.types.end(), type) != entry.types.end();
  });
}

OSStatus EventTarget::sendEvent(const CarbonEvent& event) {
  const EventTypeSpec type{event.eventClass, event.kind};
  // A copy: a handler may add or remove others.
  const auto present = handlers_;
  for (auto entry = present.rbegin(); entry != present.rend(); ++entry) {
    if (std::find(entry->types.begin(), entry->types.end(), type) == entry->types.end()) continue;
    const auto status = entry->handler(&event);
    if (status != eventNotHandledErr) return status;
  }
  return eventNotHandledErr;
}

}  // namespace platform
