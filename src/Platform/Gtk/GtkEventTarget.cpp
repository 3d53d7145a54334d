#include "Platform/Gtk/GtkEventTarget.h"

#include <algorithm>
#include <utility>

namespace platform {

GtkEventTarget::GtkEventTarget(MakeGrabs makeGrabs) : makeGrabs_(std::move(makeGrabs)) {}

GtkEventTarget::~GtkEventTarget() = default;

HotKeyGrabs& GtkEventTarget::grabs() {
  if (!grabs_) {
    grabs_ = makeGrabs_([this](HotKeyCombination combination, bool isDown, Activation activation) {
      send(combination, isDown, std::move(activation));
    });
  }
  return *grabs_;
}

bool GtkEventTarget::isRegistered(HotKeyCombination combination) const {
  return std::any_of(registrations_.begin(), registrations_.end(),
                     [&](const auto& entry) { return entry.second.combination == combination; });
}

tl::expected<EventHotKeyRef, OSStatus> GtkEventTarget::RegisterEventHotKey(HotKeyCombination combination,
                                                                           EventHotKeyID id) {
  if (!isRegistered(combination)) {
    if (const auto status = grabs().grab(combination); status != noErr) return tl::unexpected(status);
  }
  registrations_.emplace(++lastRef_, Registration{combination, id});
  return lastRef_;
}

OSStatus GtkEventTarget::UnregisterEventHotKey(EventHotKeyRef hotKey) {
  const auto found = registrations_.find(hotKey);
  if (found == registrations_.end()) return eventHotKeyInvalidErr;
  const auto combination = found->second.combination;
  registrations_.erase(found);
  if (!isRegistered(combination)) grabs().ungrab(combination);
  return noErr;
}

std::optional<std::vector<PropertyListValue::Dictionary>> GtkEventTarget::CopySymbolicHotKeys() {
  return std::vector<PropertyListValue::Dictionary>{};
}

bool GtkEventTarget::isHeldByAnother(HotKeyCombination combination) {
  return !isRegistered(combination) && grabs().isHeldByAnother(combination);
}

void GtkEventTarget::describeHotKey(HotKeyCombination combination, std::string_view name,
                                    std::string_view title) {
  grabs().describe(combination, name, title);
}

void GtkEventTarget::send(HotKeyCombination combination, bool isDown, Activation activation) {
  const ActivationScope scope(std::move(activation));
  // A copy: an action may register and unregister.
  const auto present = registrations_;
  for (const auto& [ref, registration] : present) {
    if (registration.combination != combination) continue;
    sendEvent({.kind = isDown ? kEventHotKeyPressed : kEventHotKeyReleased, .hotKeyID = registration.id});
  }
}

}  // namespace platform
