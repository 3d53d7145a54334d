#pragma once

#include "Values/SearchBarSearch.h"

#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace velkin {

/// The history as it is stored: the oldest search first.
struct SearchBarSearches {
  std::vector<SearchBarSearch> searches;

  bool operator==(const SearchBarSearches&) const = default;
};

/// How many searches the history grows to.
inline constexpr std::size_t searchLimit = 7;

/// In bytes. The answer to a search is kept if its HTML isn't longer.
inline constexpr std::size_t longestStoredResult = std::size_t{1} << 20U;

/// The history as pretty printed JSON, or why there is none: a date that is no number.
tl::expected<std::string, std::string> encode(const SearchBarSearches& searches);

/// The history out of its JSON, or in words why not; the words never hold stored text.
tl::expected<SearchBarSearches, std::string> decodeSearchBarSearches(std::string_view json);

/// Adds the answer to `text` at the end, without its HTML if that is too long to be stored, and lets go of
/// the oldest search if there were exactly `searchLimit`. A prompt that is in the history already changes
/// nothing, and false is returned: then nothing is to be saved.
bool addSearch(std::vector<SearchBarSearch>& searches, std::string_view text, std::string_view resultHtml);

}  // namespace velkin
