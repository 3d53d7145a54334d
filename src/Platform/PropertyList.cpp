#include "Platform/PropertyList.h"

#include "Platform/UTF8.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

#include <plist/plist.h>

namespace platform {

namespace {

constexpr int deepestNesting = deepestPropertyList;
// The library frees a list by recursion, so the depth must be bounded before it reads. A list can't be deeper
// than the number of its containers.
constexpr std::size_t mostContainers = mostPropertyListContainers;

struct NodeDeleter {
  void operator()(void* node) const noexcept { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct MemoryDeleter {
  void operator()(void* memory) const noexcept { std::free(memory); }
};
using IteratorMemory = std::unique_ptr<void, MemoryDeleter>;

/// The library reads and prints reals by the C library's locale, in which a comma may be the decimal point.
class NumericLocale {
 public:
  NumericLocale() noexcept : previous_(uselocale(plain())) {}
  ~NumericLocale() { uselocale(previous_); }
  NumericLocale(const NumericLocale&) = delete;
  NumericLocale& operator=(const NumericLocale&) = delete;

 private:
  static locale_t plain() noexcept {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }
  locale_t previous_;
};

bool isStorable(char32_t character) noexcept {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character != 0xFFFE && character != 0xFFFF;
}

std::string storableText(const std::string& text) {
  std::string result;
  std::string_view rest = text;
  bool isChanged = false;
  result.reserve(text.size());
  while (!rest.empty()) {
    const auto character = takeCharacter(rest);
    const bool isGood = character && isStorable(*character);
    isChanged = isChanged || !isGood;
    appendUTF8(result, isGood ? *character : replacementCharacter);
  }
  return isChanged ? result : text;
}

double storableSeconds(double seconds) noexcept {
  if (std::isnan(seconds)) return 0;
  using Limits = std::numeric_limits<std::int32_t>;
  return std::clamp(std::floor(seconds), static_cast<double>(Limits::min()),
                    static_cast<double>(Limits::max()));
}

struct Entity {
  std::string_view form;
  char character;
};
constexpr std::array entities = {Entity{"&amp;", '&'},  Entity{"&lt;", '<'},    Entity{"&gt;", '>'},
                                 Entity{"&quot;", '"'}, Entity{"&apos;", '\''}, Entity{"&#13;", '\r'}};

/// An XML text with other characters in the place of its entities. For each entity the library moves all of
/// the text behind it: a megabyte of HTML takes it a minute, and these take it nothing.
class WithoutEntities {
 public:
  explicit WithoutEntities(std::string_view xml) : xml_(xml) {
    // In there an entity is none.
    if (xml.find('&') == xml.npos || xml.find("<![CDATA[") != xml.npos || !findStandIns(xml)) return;
    changed_.reserve(xml.size());
    for (std::size_t at = 0; at < xml.size();) {
      const auto next = std::min(xml.find('&', at), xml.size());
      changed_.append(xml, at, next - at);
      at = next;
      if (at == xml.size()) break;
      const auto rest = xml.substr(at);
      const auto found = std::find_if(entities.begin(), entities.end(),
                                      [&](const Entity& entity) { return rest.starts_with(entity.form); });
      if (found == entities.end()) {
        changed_ += xml[at++];
      } else {
        appendUTF8(changed_, first_ + static_cast<char32_t>(found - entities.begin()));
        at += found->form.size();
      }
    }
    xml_ = changed_;
  }
  WithoutEntities(const WithoutEntities&) = delete;
  WithoutEntities& operator=(const WithoutEntities&) = delete;

  std::string_view xml() const noexcept { return xml_; }

  /// A text of the list with its own characters again.
  std::string restored(std::string_view text) const {
    std::string result;
    if (changed_.empty()) return result = text;
    result.reserve(text.size());
    while (!text.empty()) {
      const auto lead = std::min(text.find(standInLead), text.size());
      result.append(text, 0, lead);
      text.remove_prefix(lead);
      if (text.empty()) break;
      const auto before = text;
      const auto character = takeCharacter(text);
      const auto number = character ? *character - first_ : entities.size();
      if (number < entities.size()) {
        result += entities[number].character;
      } else {
        result.append(before, 0, before.size() - text.size());
      }
    }
    return result;
  }

 private:
  // The first byte of U+E000 to U+EFFF, which no text means anything by.
  static constexpr char standInLead = '\xEE';
  static constexpr char32_t firstPrivate = 0xE000;
  static constexpr std::size_t privateCount = 0x1000;

  /// As many in a row as there are entities, none of which is in the text.
  bool findStandIns(std::string_view xml) {
    std::vector<bool> isUsed(privateCount);
    for (auto at = xml.find(standInLead); at != xml.npos; at = xml.find(standInLead, at + 1)) {
      auto rest = xml.substr(at);
      if (const auto character = takeCharacter(rest)) isUsed[*character - firstPrivate] = true;
    }
    std::size_t run = 0;
    for (std::size_t i = 0; i < privateCount; ++i) {
      run = isUsed[i] ? 0 : run + 1;
      if (run < entities.size()) continue;
      first_ = firstPrivate + static_cast<char32_t>(i + 1 - run);
      return true;
    }
    return false;
  }

  std::string_view xml_;
  std::string changed_;
  char32_t first_ = 0;
};

/// A null node if the value has no form.
Node nodeOf(const PropertyListValue& value) {
  if (const auto* flag = value.as<bool>()) return Node(plist_new_bool(*flag ? 1 : 0));
  if (const auto* integer = value.as<std::int64_t>()) {
    return Node(plist_new_uint(static_cast<std::uint64_t>(*integer)));
  }
  if (const auto* real = value.as<double>()) return Node(plist_new_real(*real));
  if (const auto* text = value.as<std::string>()) return Node(plist_new_string(text->c_str()));
  if (const auto* data = value.as<PropertyListValue::Data>()) {
    return Node(plist_new_data(reinterpret_cast<const char*>(data->data()), data->size()));
  }
  if (const auto* date = value.as<PropertyListValue::Date>()) {
    return Node(plist_new_date(static_cast<std::int32_t>(date->secondsSince2001), 0));
  }
  if (const auto* array = value.as<PropertyListValue::Array>()) {
    Node node(plist_new_array());
    for (const auto& item : *array) plist_array_append_item(node.get(), nodeOf(item).release());
    return node;
  }
  Node node(plist_new_dict());
  for (const auto& [key, item] : *value.as<PropertyListValue::Dictionary>()) {
    plist_dict_set_item(node.get(), key.c_str(), nodeOf(item).release());
  }
  return node;
}

/// Calls `visit` with each item of a dictionary (key and item) or an array (item); false as soon as it is.
template <class Visit>
bool forEachItem(plist_t dictionary, bool wantsKeys, Visit visit) {
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(dictionary, &iterator);
  const IteratorMemory ownedIterator(iterator);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(dictionary, iterator, wantsKeys ? &key : nullptr, &item);
    const std::unique_ptr<char, MemoryDeleter> ownedKey(key);
    if (item == nullptr) return true;
    if (!visit(key, item)) return false;
  }
}

bool isShallow(plist_t node, int depth = 0) {
  if (depth > deepestNesting) return false;
  switch (plist_get_node_type(node)) {
    case PLIST_ARRAY:
      for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        if (!isShallow(plist_array_get_item(node, i), depth + 1)) return false;
      }
      return true;
    case PLIST_DICT:
      return forEachItem(node, false, [&](const char*, plist_t item) { return isShallow(item, depth + 1); });
    default:
      return true;
  }
}

std::optional<PropertyListValue> valueOf(plist_t node, const WithoutEntities& texts, int depth = 0) {
  if (depth > deepestNesting) return std::nullopt;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t flag = 0;
      plist_get_bool_val(node, &flag);
      return flag != 0;
    }
    case PLIST_UINT:
    case PLIST_UID: {
      std::uint64_t integer = 0;
      if (plist_get_node_type(node) == PLIST_UINT) {
        plist_get_uint_val(node, &integer);
      } else {
        plist_get_uid_val(node, &integer);
      }
      return static_cast<std::int64_t>(integer);
    }
    case PLIST_REAL: {
      double real = 0;
      plist_get_real_val(node, &real);
      return real;
    }
    case PLIST_STRING: {
      std::uint64_t length = 0;
      const char* text = plist_get_string_ptr(node, &length);
      return texts.restored(text == nullptr ? std::string_view() : std::string_view(text, length));
    }
    case PLIST_DATA: {
      std::uint64_t length = 0;
      const auto* bytes = reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &length));
      return bytes == nullptr ? PropertyListValue::Data() : PropertyListValue::Data(bytes, bytes + length);
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0;
      std::int32_t microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return PropertyListValue::Date{static_cast<double>(seconds)};
    }
    case PLIST_ARRAY: {
      PropertyListValue::Array array;
      for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
        auto item = valueOf(plist_array_get_item(node, i), texts, depth + 1);
        if (!item) return std::nullopt;
        array.push_back(*std::move(item));
      }
      return array;
    }
    case PLIST_DICT: {
      PropertyListValue::Dictionary dictionary;
      const bool isWhole = forEachItem(node, true, [&](const char* key, plist_t child) {
        auto item = valueOf(child, texts, depth + 1);
        if (!item) return false;
        if (key != nullptr) dictionary.insert_or_assign(texts.restored(key), *std::move(item));
        return true;
      });
      if (!isWhole) return std::nullopt;
      return dictionary;
    }
    default:
      return std::nullopt;
  }
}

std::optional<std::string> xmlOf(plist_t node) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &text, &length);
  const std::unique_ptr<char, MemoryDeleter> owned(text);
  if (text == nullptr) return std::nullopt;
  return std::string(text, length);
}

std::size_t countOf(std::string_view part, std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

bool hasFewContainers(std::string_view xml) {
  return countOf("<array", xml) + countOf("<dict", xml) <= mostContainers;
}

/// The number of objects that a binary list's last 32 bytes announce.
std::uint64_t objectCount(std::string_view binary) {
  if (binary.size() < 32) return 0;
  std::uint64_t count = 0;
  for (const char byte : binary.substr(binary.size() - 24, 8)) {
    count = (count << 8U) | static_cast<std::uint8_t>(byte);
  }
  return count;
}

/// Nothing if the text is no XML list. A NUL would end a text early inside the library and trip an assertion
/// there; XML knows none.
std::optional<PropertyListValue> valueOfXML(std::string_view xml) {
  if (xml.find('\0') != xml.npos || !hasFewContainers(xml)) return std::nullopt;
  const WithoutEntities texts(xml);
  plist_t raw = nullptr;
  plist_from_xml(texts.xml().data(), static_cast<std::uint32_t>(texts.xml().size()), &raw);
  const Node node(raw);
  return node ? valueOf(node.get(), texts) : std::nullopt;
}

/// Text between tags.
std::size_t escapedSize(std::string_view text) {
  std::size_t size = text.size();
  for (const char c : text) {
    if (c == '&' || c == '\r') size += 4;
    if (c == '<' || c == '>') size += 3;
  }
  return size;
}

// The tags, the line's end, and the indentation of a value that isn't nested very deep.
constexpr std::size_t lineSize = 64;

template <class Container, class Extent>
PropertyListExtent extentOfItems(const Container& items, Extent extent) {
  PropertyListExtent sum{2 * lineSize, 1, 0};
  for (const auto& item : items) {
    const auto part = extent(item);
    sum.bytes += part.bytes;
    sum.containers += part.containers;
    sum.depth = std::max(sum.depth, part.depth);
  }
  ++sum.depth;
  // One tab more before each line.
  sum.bytes += sum.bytes / lineSize * static_cast<std::size_t>(sum.depth > 3 ? sum.depth : 0);
  return sum;
}

}  // namespace

PropertyListExtent extentOf(const PropertyListValue& value) {
  if (const auto* text = value.as<std::string>()) return {lineSize + escapedSize(*text), 0, 0};
  // In lines of base64, each with its indentation.
  if (const auto* data = value.as<PropertyListValue::Data>()) return {lineSize + data->size() * 2, 0, 0};
  if (const auto* array = value.as<PropertyListValue::Array>()) {
    return extentOfItems(*array, [](const auto& item) { return extentOf(item); });
  }
  if (const auto* dictionary = value.as<PropertyListValue::Dictionary>()) {
    return extentOfItems(*dictionary, [](const auto& entry) { return extentOf(entry.first, entry.second); });
  }
  return {lineSize, 0, 0};
}

PropertyListExtent extentOf(std::string_view key, const PropertyListValue& value) {
  auto extent = extentOf(value);
  extent.bytes += lineSize + escapedSize(key);
  return extent;
}

bool PropertyListValue::operator==(const PropertyListValue& other) const {
  return content_ == other.content_;
}

PropertyListValue storable(PropertyListValue value) {
  if (const auto* text = value.as<std::string>()) return storableText(*text);
  if (const auto* date = value.as<PropertyListValue::Date>()) {
    return PropertyListValue::Date{storableSeconds(date->secondsSince2001)};
  }
  if (const auto* array = value.as<PropertyListValue::Array>()) {
    PropertyListValue::Array result;
    for (const auto& item : *array) result.push_back(storable(item));
    return result;
  }
  if (const auto* dictionary = value.as<PropertyListValue::Dictionary>()) {
    PropertyListValue::Dictionary result;
    for (const auto& [key, item] : *dictionary) result.insert_or_assign(storableText(key), storable(item));
    return result;
  }
  return value;
}

std::optional<PropertyListValue> readPropertyList(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  const NumericLocale locale;
  if (!bytes.starts_with("bplist")) return valueOfXML(bytes);
  if (objectCount(bytes) > mostContainers) return std::nullopt;
  plist_t binary = nullptr;
  plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &binary);
  const Node node(binary);
  if (!node || !isShallow(node.get())) return std::nullopt;
  // A binary list's key may hold a NUL, and asking the library for such a key ends the process. The way over
  // XML shows it first.
  const auto xml = xmlOf(node.get());
  return xml ? valueOfXML(*xml) : std::nullopt;
}

std::optional<std::string> writeXMLPropertyList(const PropertyListValue& value) {
  const NumericLocale locale;
  const auto node = nodeOf(storable(value));
  const auto xml = node ? xmlOf(node.get()) : std::nullopt;
  if (!xml) return std::nullopt;
  // As it stands, an XML reader would take a carriage return for the end of a line and make a line feed of
  // it.
  std::string result;
  result.reserve(xml->size());
  for (const char character : *xml) {
    if (character == '\r') {
      result += "&#13;";
    } else {
      result += character;
    }
  }
  return result;
}

}  // namespace platform
