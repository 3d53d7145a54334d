#pragma once

#include <string_view>

namespace velkin {

/// What a new scratchpad shows: each feature of the dialect, with an example.
extern const std::string_view sampleMarkdown;
/// The same without its markup.
extern const std::string_view sampleUnformattedMarkdown;

}  // namespace velkin
