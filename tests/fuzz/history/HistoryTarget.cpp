#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/SearchBarSearches.h"
#include "fuzz/support/Require.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using fuzz::require;

/// Whatever is stored as the history: no crash; what can be read can be written and reads the same; and a
/// search is added to it as to any other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static platform::HeadlessPlatform desktop;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  auto decoded = velkin::decodeSearchBarSearches(input);
  if (!decoded) {
    require(!decoded.error().empty(), "it says why it can't be read");
    return 0;
  }
  const auto encoded = velkin::encode(*decoded);
  require(encoded.has_value(), "what was read can be written");
  const auto again = velkin::decodeSearchBarSearches(*encoded);
  require(again.has_value(), "what was written can be read");
  require(*again == *decoded, "it reads as it was written");

  const auto before = decoded->searches.size();
  const bool isAdded = velkin::addSearch(decoded->searches, "a prompt", "<p>an answer</p>");
  const auto after = decoded->searches.size();
  if (!isAdded) {
    require(after == before, "a known prompt changes nothing");
  } else {
    require(after == (before == velkin::searchLimit ? before : before + 1), "the history grows to its limit");
    require(decoded->searches.back().searchPrompt == "a prompt", "the newest is the last");
  }
  return 0;
}
