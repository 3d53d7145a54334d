#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>
#include <tl/expected.hpp>

namespace velkin {

/// `value` as the JSON that stored data and exported documents are written in: two blanks of indentation, a
/// blank before and after each colon, "/" written as "\/", an empty container with an empty line inside,
/// numbers as short as they can be read back, and nothing behind the last bracket. Keys keep their order.
/// Bytes that aren't UTF-8 become U+FFFD. The error, in words: a number that isn't finite.
tl::expected<std::string, std::string> prettyJSON(const nlohmann::ordered_json& value);

}  // namespace velkin
