#include "Values/WebViewSwitchType.h"

#include "Values/ServiceAddresses.h"

#include <algorithm>
#include <string>

namespace velkin {

namespace {

struct ViewRow {
  std::string_view caseName;
  std::string_view viewName;
  std::string_view ServiceAddresses::*address;
  UserDefault userDefault;
  EasterEggItem easterEgg;
  /// What `setUrl` writes.
  std::optional<UserDefault> written;
};

using Addresses = ServiceAddresses;
using Egg = EasterEggItem;
using Key = UserDefault;

// The view `onboarding` has no address; its placeholder is put in by `defaultUrlString`.
constexpr std::array<ViewRow, allWebViewSwitchTypes.size()> viewRows = {{
    {"chatgpt", "ChatGPT", &Addresses::chatgpt, Key::chatUrl, Egg::chatGPT, Key::chatUrl},
    {"bard", "Bard", &Addresses::bard, Key::bardUrl, Egg::bard, Key::bardUrl},
    {"bitbucket", "BitBucket", &Addresses::bitbucket, Key::bitUrl, Egg::bitBucket, Key::bitUrl},
    {"gitlab", "GitLab", &Addresses::gitlab, Key::gitUrl, Egg::gitLab, Key::gitUrl},
    {"hemingway", "Hemingway", &Addresses::hemingway, Key::hemingwayUrl, Egg::hemingway, Key::hemingwayUrl},
    {"jira", "Jira", &Addresses::jira, Key::jiraUrl, Egg::jira, Key::jiraUrl},
    {"markdown", "Markdown", &Addresses::chatgpt, Key::chatUrl, Egg::chatGPT, std::nullopt},
    {"onboarding", "ChatGPT", nullptr, Key::chatUrl, Egg::chatGPT, std::nullopt},
    {"releaseNotes", "ChatGPT", &Addresses::chatgpt, Key::chatUrl, Egg::chatGPT, std::nullopt},
    {"editUrls", "ChatGPT", &Addresses::chatgpt, Key::chatUrl, Egg::chatGPT, std::nullopt},
    {"search", "ChatGPT", &Addresses::chatgpt, Key::chatUrl, Egg::chatGPT, Key::searchKey},
}};

const ViewRow& rowOf(WebViewSwitchType type) noexcept { return viewRows[static_cast<std::size_t>(type)]; }

}  // namespace

std::optional<WebViewSwitchType> fromCaseName(std::string_view name) noexcept {
  const auto found = std::ranges::find(viewRows, name, &ViewRow::caseName);
  if (found == viewRows.end()) return std::nullopt;
  return allWebViewSwitchTypes[static_cast<std::size_t>(found - viewRows.begin())];
}

std::string_view viewName(WebViewSwitchType type) noexcept { return rowOf(type).viewName; }

std::string_view defaultUrlString(WebViewSwitchType type) noexcept {
  const auto address = rowOf(type).address;
  return address != nullptr ? serviceAddresses.*address : "Enter Url";
}

UserDefault getUserDefault(WebViewSwitchType type) noexcept { return rowOf(type).userDefault; }

EasterEggItem getEasterEgg(WebViewSwitchType type) noexcept { return rowOf(type).easterEgg; }

WebViewSwitchType viewOf(EasterEggItem item) noexcept {
  // The key's entry is the last, behind those of the web views.
  return item == Egg::search ? WebViewSwitchType::search
                             : allWebViewSwitchTypes[static_cast<std::size_t>(item)];
}

std::optional<UserDefault> writtenUserDefault(WebViewSwitchType type) noexcept { return rowOf(type).written; }

}  // namespace velkin
