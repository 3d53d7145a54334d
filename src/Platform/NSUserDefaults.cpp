#include "Platform/NSUserDefaults.h"

#include "Platform/Platform.h"

#include <cmath>

namespace platform {

namespace {

std::optional<double> numberIn(const PropertyListValue& value) {
  if (const auto* integer = value.as<std::int64_t>()) return static_cast<double>(*integer);
  if (const auto* real = value.as<double>()) return *real;
  return std::nullopt;
}

std::optional<std::int64_t> integerIn(const PropertyListValue& value) {
  if (const auto* integer = value.as<std::int64_t>()) return *integer;
  const auto* real = value.as<double>();
  if (real == nullptr) return std::nullopt;
  // The bounds are powers of two, so that comparing with them is exact; NaN fails the comparison.
  constexpr double beyond = 9'223'372'036'854'775'808.0;
  return *real >= -beyond && *real < beyond ? static_cast<std::int64_t>(*real) : 0;
}

template <class Type>
std::optional<Type> contentOf(const PropertyListValue& value) {
  const auto* content = value.as<Type>();
  return content != nullptr ? std::optional<Type>(*content) : std::nullopt;
}

}  // namespace

NSUserDefaults& NSUserDefaults::standardUserDefaults() { return Platform::current().standardUserDefaults(); }

template <class Read>
auto NSUserDefaults::typedValue(std::string_view key, Read read) const {
  if (const auto stored = storedValue(key)) {
    if (auto content = read(*stored)) return content;
  }
  const auto registered = registeredValue(key);
  return registered ? read(*registered) : decltype(read(*registered))();
}

std::optional<PropertyListValue> NSUserDefaults::valueForKey(std::string_view key) const {
  auto stored = storedValue(key);
  return stored ? stored : registeredValue(key);
}

std::optional<std::string> NSUserDefaults::stringForKey(std::string_view key) const {
  return typedValue(key, contentOf<std::string>);
}

bool NSUserDefaults::boolForKey(std::string_view key) const {
  return typedValue(key, contentOf<bool>).value_or(false);
}

std::int64_t NSUserDefaults::integerForKey(std::string_view key) const {
  return typedValue(key, integerIn).value_or(0);
}

float NSUserDefaults::floatForKey(std::string_view key) const {
  const auto number = static_cast<float>(typedValue(key, numberIn).value_or(0));
  return std::isfinite(number) ? number : 0;
}

void NSUserDefaults::registerDefaults(const PropertyListValue::Dictionary& defaults) {
  const std::lock_guard lock(registrationMutex_);
  for (const auto& [key, value] : defaults) registered_.insert_or_assign(key, value);
}

std::optional<PropertyListValue> NSUserDefaults::registeredValue(std::string_view key) const {
  const std::lock_guard lock(registrationMutex_);
  const auto entry = registered_.find(key);
  return entry != registered_.end() ? std::optional(entry->second) : std::nullopt;
}

}  // namespace platform
