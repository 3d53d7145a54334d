#pragma once

#include <array>
#include <string_view>

namespace velkin {

/// The addresses that a user can edit, in the order of the list that shows them. The last one is the search
/// bar's API key, edited as though it were an address.
enum class EasterEggItem { chatGPT, bard, bitBucket, gitLab, hemingway, jira, search };

inline constexpr std::array allEasterEggItems = {
    EasterEggItem::chatGPT,   EasterEggItem::bard, EasterEggItem::bitBucket, EasterEggItem::gitLab,
    EasterEggItem::hemingway, EasterEggItem::jira, EasterEggItem::search};

std::string_view title(EasterEggItem item) noexcept;
/// The shortcut that shows the view, in glyphs.
std::string_view keyString(EasterEggItem item) noexcept;
}  // namespace velkin
