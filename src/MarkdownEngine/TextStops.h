#pragma once

#include <cstddef>
#include <string_view>

namespace markdown {

/// The first position from `from` on at which plain text may end, or the end of the text: a character that
/// can be markup or an escape, a newline, a tab, white space beyond ASCII, or a blank that doesn't simply
/// stand before a letter. `from` is where a scalar begins. What stands at the position decides; the search
/// only never goes past it.
[[nodiscard]] std::size_t findTextStop(std::string_view text, std::size_t from) noexcept;

}  // namespace markdown
