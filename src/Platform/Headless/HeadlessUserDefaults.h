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
  void storeWhatIsHeldBack() override;

  /// What is stored, registered defaults not included.
  PropertyListValue::Dictionary stored() const;
  /// The keys that were set or removed, in order, repetitions included.
  std::vector<std::string> changedKeys() const;
  /// In how many goes they were: what was changed during a `Together` is one.
  int timesStored() const;

 protected:
  void holdBack() override;
  void storeHeldBack() override;
  std::optional<PropertyListValue> storedValue(std::string_view key) const override;

 private:
  void changed(std::string_view key);

  mutable std::mutex mutex_;
  PropertyListValue::Dictionary stored_;
  std::vector<std::string> changedKeys_;
  int holders_ = 0;
  bool hasHeldBack_ = false;
  int timesStored_ = 0;
};

}  // namespace platform
