#pragma once

#include <string>
#include <string_view>

namespace velkin {

/// The text in upper or lower case by Unicode's full mappings, the same in every language: "ß" becomes "SS".
std::string uppercased(std::string_view text);
std::string lowercased(std::string_view text);

}  // namespace velkin
