#pragma once

#include "Values/WebViewSwitchType.h"

#include <string_view>

namespace velkin {

/// As which browser a view's page, and whatever asks for its address beforehand, names itself; empty for the
/// engine's own name. The chat services turn away what they don't know as a desktop browser.
constexpr std::string_view customUserAgent(WebViewSwitchType type) noexcept {
  const bool isChatService = type == WebViewSwitchType::chatgpt || type == WebViewSwitchType::bard;
  return isChatService ? "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_11_3) AppleWebKit/605.1.15 (KHTML, like "
                         "Gecko) Version/14.1.1 Safari/605.1.15"
                       : std::string_view();
}

}  // namespace velkin
