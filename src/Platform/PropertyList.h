#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace platform {

/// One value of a property list: what the settings domain and a web archive are made of. A plain value; two
/// are equal if type and content are (an integer never equals a real).
class PropertyListValue {
 public:
  using Data = std::vector<std::uint8_t>;
  using Array = std::vector<PropertyListValue>;
  using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;

  struct Date {
    /// A list on disk keeps whole seconds, of the years 1932 to 2069 only.
    double secondsSince2001 = 0;
    bool operator==(const Date&) const = default;
  };

  PropertyListValue(bool value) : content_(value) {}
  template <std::integral Integer>
  requires(!std::same_as<Integer, bool>) PropertyListValue(Integer value)
      : content_(static_cast<std::int64_t>(value)) {}
  PropertyListValue(double value) : content_(value) {}
  PropertyListValue(std::string value) : content_(std::move(value)) {}
  PropertyListValue(std::string_view value) : content_(std::string(value)) {}
  PropertyListValue(const char* value) : content_(std::string(value)) {}
  PropertyListValue(Data value) : content_(std::move(value)) {}
  PropertyListValue(Date value) : content_(value) {}
  PropertyListValue(Array value);
  PropertyListValue(Dictionary value);

  /// The content if it is of exactly this type, else nullptr. Types: bool, std::int64_t, double, std::string,
  /// Data, Date, Array, Dictionary.
  template <class Type>
  const Type* as() const noexcept {
    return std::get_if<Type>(&content_);
  }

  bool operator==(const PropertyListValue& other) const;

 private:
  std::variant<bool, std::int64_t, double, std::string, Data, Date, Array, Dictionary> content_;
};

inline PropertyListValue::PropertyListValue(Array value) : content_(std::move(value)) {}
inline PropertyListValue::PropertyListValue(Dictionary value) : content_(std::move(value)) {}

/// `value` as a property list can hold it and give it back unchanged. In texts and keys, each run of bytes
/// that isn't UTF-8 and each character that XML has no form for (NUL, control characters other than tab, line
/// feed and carriage return, U+FFFE, U+FFFF) becomes U+FFFD: the text stays readable and the file
/// well-formed. Dates lose their fraction and are held inside the range above.
PropertyListValue storable(PropertyListValue value);

/// How deep a list may be nested, and how many arrays and dictionaries it may hold, to be read.
inline constexpr int deepestPropertyList = 512;
inline constexpr std::size_t mostPropertyListContainers = 10'000;

/// What a value takes as a part of an XML property list.
struct PropertyListExtent {
  /// Never less than it takes, and little more.
  std::size_t bytes = 0;
  std::size_t containers = 0;
  /// 0 for what is no container.
  int depth = 0;
};
PropertyListExtent extentOf(const PropertyListValue& value);
/// The same of a dictionary's entry.
PropertyListExtent extentOf(std::string_view key, const PropertyListValue& value);

/// Reads an XML or a binary property list. Nothing if the text is neither, is cut off, holds a NUL character
/// in its XML, is nested more than 512 deep, or has more than 10,000 containers (as binary list: values). The
/// numbers don't depend on the locale. Any thread.
std::optional<PropertyListValue> readPropertyList(std::string_view bytes);

/// `storable(value)` as an XML property list in UTF-8. Nothing if memory or the format's size limit (4 GB)
/// doesn't suffice. Any thread.
std::optional<std::string> writeXMLPropertyList(const PropertyListValue& value);

}  // namespace platform
