#include "Platform/Headless/HeadlessUserDefaults.h"

#include <utility>

namespace platform {

void HeadlessUserDefaults::setObject(PropertyListValue value, std::string_view key) {
  const std::lock_guard lock(mutex_);
  changed(key);
  stored_.insert_or_assign(std::string(key), storable(std::move(value)));
}

void HeadlessUserDefaults::removeObjectForKey(std::string_view key) {
  const std::lock_guard lock(mutex_);
  changed(key);
  stored_.erase(std::string(key));
}

void HeadlessUserDefaults::storeWhatIsHeldBack() {
  const std::lock_guard lock(mutex_);
  if (std::exchange(hasHeldBack_, false)) ++timesStored_;
}

PropertyListValue::Dictionary HeadlessUserDefaults::stored() const {
  const std::lock_guard lock(mutex_);
  return stored_;
}

std::vector<std::string> HeadlessUserDefaults::changedKeys() const {
  const std::lock_guard lock(mutex_);
  return changedKeys_;
}

int HeadlessUserDefaults::timesStored() const {
  const std::lock_guard lock(mutex_);
  return timesStored_;
}

void HeadlessUserDefaults::changed(std::string_view key) {
  changedKeys_.emplace_back(key);
  hasHeldBack_ = holders_ > 0;
  if (!hasHeldBack_) ++timesStored_;
}

void HeadlessUserDefaults::holdBack() {
  const std::lock_guard lock(mutex_);
  ++holders_;
}

void HeadlessUserDefaults::storeHeldBack() {
  const std::lock_guard lock(mutex_);
  if (--holders_ == 0 && std::exchange(hasHeldBack_, false)) ++timesStored_;
}

std::optional<PropertyListValue> HeadlessUserDefaults::storedValue(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const auto entry = stored_.find(key);
  return entry != stored_.end() ? std::optional(entry->second) : std::nullopt;
}

}  // namespace platform
