#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <optional>
#include <string_view>
#include <utility>

namespace velkin {

/// The settings, each with the key under which it is stored. Some keys differ from the name here, and stored
/// data depends on them to the byte. What type each holds stands in `UserDefaultsHelper`.
enum class UserDefault {
  experimentalEnabled,
  showToolBar,
  startAtLogin,
  stickyMenu,
  hemingwayEnabled,
  isAlternateViewVisible,
  isDarkMode,
  onboardingCompleted,
  onboardingChatURL,
  releaseNoteBuildVersion,
  webViewHeight,
  webViewWidth,
  webViewFSToggleHeight,
  webViewFSToggleWidth,
  webViewZoom,
  lastVisibleWebView,
  lastTimeChatGPTVisible,
  sideBarGroup1,
  sideBarGroup2,
  sideBarGroup3,
  sideBarGroup4,
  chatUrl,
  bardUrl,
  bitUrl,
  gitUrl,
  hemingwayUrl,
  jiraUrl,
  searchKey,
  searchBarSearches,
  markdownString,
};

/// In the enumeration's order.
inline constexpr auto userDefaultKeys = std::to_array<std::string_view>({
    "experimentalEnabled",
    "showToolBar",
    "startAtLogin",
    "stickyMenu",
    "hemingwayEnabled",
    "isAlternateViewVisible",
    "isDarkMode",
    "onboardingCompleted",
    "onboardingChatURL",
    "releaseNoteVersion",
    "viewHeight",
    "viewWidth",
    "viewFSToggleHeight",
    "viewFSToggleWidth",
    "zoomLevel",
    "lastVisibleWebView",
    "lastTimeChatGPTVisible",
    "sideBarGroup1",
    "sideBarGroup2",
    "sideBarGroup3",
    "sideBarGroup4",
    "chatUrl",
    "bardUrl",
    "bitUrl",
    "gitUrl",
    "hemingwayUrl",
    "jiraUrl",
    "searchBarKey",
    "searchBarRecentSearches",
    "markDownString",
});
static_assert(userDefaultKeys.size() == static_cast<std::size_t>(UserDefault::markdownString) + 1);

/// The key in the settings domain.
constexpr std::string_view rawValue(UserDefault setting) noexcept {
  return userDefaultKeys[static_cast<std::size_t>(setting)];
}

/// `fromRawValue<UserDefault>(key)`: the setting stored under `key`, if there is one.
template <std::same_as<UserDefault> Setting>
constexpr std::optional<Setting> fromRawValue(std::string_view key) noexcept {
  const auto found = std::find(userDefaultKeys.begin(), userDefaultKeys.end(), key);
  if (found == userDefaultKeys.end()) return std::nullopt;
  return static_cast<UserDefault>(found - userDefaultKeys.begin());
}

}  // namespace velkin
