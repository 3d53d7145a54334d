#include "Values/EasterEggItem.h"

namespace velkin {

namespace {

struct EggRow {
  std::string_view title;
  std::string_view keyString;
};

constexpr std::array<EggRow, allEasterEggItems.size()> eggRows = {{
    {"AI", "⌘T"},
    {"Bard", "⌘D"},
    {"BitBucket", "⌘B"},
    {"GitLab", "⌘G"},
    {"Hemingway", "⌘H"},
    {"Jira", "⌘J"},
    {"Search Bar (ApiKey)", "⌘⇧P"},
}};

const EggRow& rowOf(EasterEggItem item) noexcept { return eggRows[static_cast<std::size_t>(item)]; }

}  // namespace

std::string_view title(EasterEggItem item) noexcept { return rowOf(item).title; }

std::string_view keyString(EasterEggItem item) noexcept { return rowOf(item).keyString; }

}  // namespace velkin
