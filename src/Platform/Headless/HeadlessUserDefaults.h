#pragma once

#include "Platform/NSUserDefaults.h"

#include <mutex>
#include <string>
#include <vector>

namespace platform {

/// A settings domain in memory. Any thread.
class HeadlessUserDefaults : public NSUserDefaults {
 public:
  void setObject(PropertyListValue value, std::string_view key) override;
  void removeObjectForKey(std::string_view key) override;

  /// What is stored, registered defaults not included.
  PropertyListValue::Dictionary stored() const;
  /// The keys that were set or removed, in order, repetitions included.
  std::vector<std::string> changedKeys() const;

 protected:
  std::optional<PropertyListValue> storedValue(std::string_view key) const override;

 private:
  mutable std::mutex mutex_;
  PropertyListValue::Dictionary stored_;
  std::vector<std::string> changedKeys_;
};

}  // namespace platform
