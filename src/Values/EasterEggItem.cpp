#include "Values/EasterEggItem.h"

namespace velkin {

namespace {

struct Row {
  std::string_view title;
  std::string_view keyString;
};

constexpr std::array<Row, allEasterEggItems.size()> rows = {{
    {"AI", "⌘T"},
    {"Bard", "⌘D"},
    {"BitBucket", "⌘B"},
    {"GitLab", "⌘G"},
    {"Hemingway", "⌘H"},
    {"Jira", "⌘J"},
    {"Search Bar (ApiKey)", "⌘⇧P"},
}};

const Row& rowOf(EasterEggItem item) noexcept { return rows[static_cast<std::size_t>(item)]; }

}  // namespace

std::string_view title(EasterEggItem item) noexcept { return rowOf(item).title; }

std::string_view keyString(EasterEggItem item) noexcept { return rowOf(item).keyString; }

}  // namespace velkin
