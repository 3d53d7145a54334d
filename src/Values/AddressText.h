#pragma once

#include "Platform/URL.h"

#include <string>
#include <string_view>

namespace velkin {

// What becomes of a text that a user gives as an address.

/// Without the blanks and line ends around it, which pasting brings along.
std::string trimmedAddress(std::string_view text);
/// An http or https address with a host.
bool isWebAddress(const platform::URL& url);
bool isWebAddress(std::string_view text);
/// The text with whatever an address can't hold percent-encoded, so that it always parses. An empty text stays
/// empty.
std::string storableAddress(std::string_view text);

}  // namespace velkin
