#include "WebView/EasterEggItem.h"

#include "Helpers/UserDefaultsHelper.h"
#include "WebView/WebViewSwitchType.h"

namespace velkin {

namespace {

struct Row {
  std::string_view title;
  std::string_view keyString;
  WebViewSwitchType view;
};

constexpr std::array<Row, allEasterEggItems.size()> rows = {{
    {"AI", "⌘T", WebViewSwitchType::chatgpt},
    {"Bard", "⌘D", WebViewSwitchType::bard},
    {"BitBucket", "⌘B", WebViewSwitchType::bitbucket},
    {"GitLab", "⌘G", WebViewSwitchType::gitlab},
    {"Hemingway", "⌘H", WebViewSwitchType::hemingway},
    {"Jira", "⌘J", WebViewSwitchType::jira},
    {"Search Bar (ApiKey)", "⌘⇧P", WebViewSwitchType::search},
}};

const Row& rowOf(EasterEggItem item) noexcept { return rows[static_cast<std::size_t>(item)]; }

}  // namespace

std::string_view title(EasterEggItem item) noexcept { return rowOf(item).title; }

std::string_view keyString(EasterEggItem item) noexcept { return rowOf(item).keyString; }

std::string url(EasterEggItem item) {
  const auto address = getUrl(rowOf(item).view).absoluteString();
  return item == EasterEggItem::search ? UserDefaultsHelper().getString(UserDefault::searchKey, address)
                                       : address;
}

void setUrl(EasterEggItem item, std::string_view text) { setUrl(rowOf(item).view, text); }

}  // namespace velkin
