#pragma once

#include "Platform/PropertyList.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The settings domain: property-list values under keys. A value of another type than the one asked for reads
/// as absent; integers and reals are numbers for each other. Where nothing is stored, a registered default of
/// the right type is given instead. Nothing here reports an error. Any thread.
class NSUserDefaults {
 public:
  /// While one lives, what is set in its domain is kept back, and stored at its end in one go. Reads see it
  /// at once.
  class Together {
   public:
    explicit Together(NSUserDefaults& defaults) : defaults_(defaults) { defaults_.holdBack(); }
    ~Together() { defaults_.storeHeldBack(); }
    Together(const Together&) = delete;
    Together& operator=(const Together&) = delete;

   private:
    NSUserDefaults& defaults_;
  };

  /// The domain of the installed platform.
  static NSUserDefaults& standardUserDefaults();

  NSUserDefaults() = default;
  virtual ~NSUserDefaults() = default;
  NSUserDefaults(const NSUserDefaults&) = delete;
  NSUserDefaults& operator=(const NSUserDefaults&) = delete;

  /// The value as it is stored, else as it is registered.
  std::optional<PropertyListValue> valueForKey(std::string_view key) const;
  std::optional<std::string> stringForKey(std::string_view key) const;
  /// False if absent.
  bool boolForKey(std::string_view key) const;
  /// 0 if absent. A real loses its fraction; one that isn't a number or doesn't fit gives 0.
  std::int64_t integerForKey(std::string_view key) const;
  /// In single precision; 0 if absent, and 0 for what isn't a finite number in single precision.
  float floatForKey(std::string_view key) const;

  /// Stores `storable(value)`. When this returns, the value is where the domain keeps it, unless a `Together`
  /// lives.
  virtual void setObject(PropertyListValue value, std::string_view key) = 0;
  virtual void removeObjectForKey(std::string_view key) = 0;

  /// Stores at once what a `Together` keeps back and what could not be stored when it was set. For the end of
  /// the process, which ends no `Together`.
  virtual void storeWhatIsHeldBack() {}

  /// Adds to the values that are given where nothing is stored. They are never stored themselves.
  void registerDefaults(const PropertyListValue::Dictionary& defaults);

 protected:
  /// The two ends of a `Together`; several may overlap. A domain that stores without cost need not hold back.
  virtual void holdBack() {}
  virtual void storeHeldBack() {}
  virtual std::optional<PropertyListValue> storedValue(std::string_view key) const = 0;

 private:
  std::optional<PropertyListValue> registeredValue(std::string_view key) const;
  /// `read` of the stored value, else of the registered one; `read` gives nothing for another type.
  template <class Read>
  auto typedValue(std::string_view key, Read read) const;

  mutable std::mutex registrationMutex_;
  PropertyListValue::Dictionary registered_;
};

}  // namespace platform
