#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velkin {

/// `text` with every byte percent-encoded that may not stand as it is in an address's query. Nothing if the
/// text isn't UTF-8.
std::optional<std::string> addingPercentEncodingForQuery(std::string_view text);

}  // namespace velkin
