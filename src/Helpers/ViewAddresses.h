#pragma once

#include "Platform/URL.h"
#include "Values/EasterEggItem.h"
#include "Values/WebViewSwitchType.h"

#include <string>
#include <string_view>

namespace velkin {

/// The address to open: of the six web views the stored one, unless it is empty; else the built-in one. One
/// that doesn't parse is a fatal error: addresses are checked where they are entered.
platform::URL getUrl(WebViewSwitchType type);
/// Stores the address of one of the six web views. Of `search` it stores the API key; of every other view
/// nothing.
void setUrl(WebViewSwitchType type, std::string_view url);

/// The address to open, or the stored API key; with no key stored, the chat service's default address. A
/// stored address that doesn't parse is a fatal error.
std::string url(EasterEggItem item);
void setUrl(EasterEggItem item, std::string_view text);

}  // namespace velkin
