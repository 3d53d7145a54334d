#include "MarkdownEngine/NamedURLCollection.h"

#include "MarkdownEngine/CharacterClasses.h"

#include <algorithm>
#include <limits>
#include <new>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>

namespace markdown {

std::optional<std::string_view> NamedURLCollection::url(std::string_view name) const {
  if (urlsByName_.empty()) return std::nullopt;
  const auto found = urlsByName_.find(lowercased(name));
  if (found == urlsByName_.end()) return std::nullopt;
  return found->second;
}

std::string lowercased(std::string_view text) {
  std::string result;
  if (std::all_of(text.begin(), text.end(), isAscii)) {
    result.reserve(text.size());
    for (const char byte : text) {
      result.push_back(byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte);
    }
    return result;
  }
  // The library counts in 32 bits; a name beyond that is nobody's and stays as it is.
  if (text.size() > static_cast<std::size_t>(std::numeric_limits<int32_t>::max()) / 3)
    return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  icu::StringByteSink<std::string> sink(&result);
  icu::CaseMap::utf8ToLower("", 0, {text.data(), static_cast<int32_t>(text.size())}, sink, nullptr, status);
  return result;
}

}  // namespace markdown
