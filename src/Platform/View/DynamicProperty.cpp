#include "Platform/View/DynamicProperty.h"

#include <algorithm>
#include <functional>

namespace platform {

namespace {

thread_local DynamicProperty::Capture* currentCapture = nullptr;

}  // namespace

DynamicProperty::DynamicProperty() {
  if (currentCapture != nullptr) currentCapture->constructed_.push_back(this);
}

DynamicProperty::DynamicProperty(const DynamicProperty&) : DynamicProperty() {}

DynamicProperty::~DynamicProperty() = default;

DynamicProperty::Capture::Capture() : outer_(currentCapture) { currentCapture = this; }

DynamicProperty::Capture::~Capture() { currentCapture = outer_; }

std::vector<DynamicProperty*> DynamicProperty::Capture::within(const void* start, std::size_t size) const {
  const auto* begin = static_cast<const char*>(start);
  const auto* end = begin + size;
  const std::less<const char*> before;
  std::vector<DynamicProperty*> found;
  for (auto* property : constructed_) {
    const auto* address = reinterpret_cast<const char*>(property);
    if (!before(address, begin) && before(address, end)) found.push_back(property);
  }
  std::sort(found.begin(), found.end(), std::less<DynamicProperty*>());
  return found;
}

}  // namespace platform
