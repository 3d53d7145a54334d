#pragma once

#include "Values/AppearanceFontSize.h"
#include "Values/AppearanceHeight.h"
#include "Values/AppearanceWidth.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace velkin {

/// The settings. Some are stored under a key that differs from the name here.
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

/// What is known of a setting. Its type is the one that `absent` holds.
struct SettingRow {
  UserDefault setting;
  /// In the settings domain. Stored data depends on it to the byte.
  std::string_view key;
  /// In the settings document; empty for what isn't carried to another machine.
  std::string_view documentKey;
  /// What a read gives where nothing is stored. An address that was never stored is the view's built-in one.
  std::variant<bool, std::int64_t, double, std::string_view> absent;
};

/// All settings, in the enumeration's order, which is the document's too.
inline constexpr auto settingRows = std::to_array<SettingRow>({
    {UserDefault::experimentalEnabled, "experimentalEnabled", "experimentalEnabled", false},
    {UserDefault::showToolBar, "showToolBar", "showToolBar", true},
    {UserDefault::startAtLogin, "startAtLogin", "startAtLogin", false},
    {UserDefault::stickyMenu, "stickyMenu", "stickyMenu", false},
    {UserDefault::hemingwayEnabled, "hemingwayEnabled", "hemingwayEnabled", false},
    {UserDefault::isAlternateViewVisible, "isAlternateViewVisible", "isAlternateViewVisible", false},
    {UserDefault::isDarkMode, "isDarkMode", "isDarkMode", false},
    {UserDefault::onboardingCompleted, "onboardingCompleted", "onboardingCompleted", false},
    {UserDefault::onboardingChatURL, "onboardingChatURL", "onboardingChatURL", std::string_view{}},
    {UserDefault::releaseNoteBuildVersion, "releaseNoteVersion", "releaseNoteBuildVersion", std::int64_t{0}},
    {UserDefault::webViewHeight, "viewHeight", "webViewHeight", rawValue(AppearanceHeight::medium)},
    {UserDefault::webViewWidth, "viewWidth", "webViewWidth", rawValue(AppearanceWidth::medium)},
    {UserDefault::webViewFSToggleHeight, "viewFSToggleHeight", "webViewFSToggleHeight",
     rawValue(AppearanceHeight::medium)},
    {UserDefault::webViewFSToggleWidth, "viewFSToggleWidth", "webViewFSToggleWidth",
     rawValue(AppearanceWidth::medium)},
    {UserDefault::webViewZoom, "zoomLevel", "webViewZoom", rawValue(AppearanceFontSize::normal)},
    {UserDefault::lastVisibleWebView, "lastVisibleWebView", "lastVisibleWebView", std::int64_t{0}},
    {UserDefault::lastTimeChatGPTVisible, "lastTimeChatGPTVisible", "lastTimeChatGPTVisible",
     std::int64_t{0}},
    {UserDefault::sideBarGroup1, "sideBarGroup1", "sideBarGroup1", std::string_view{}},
    {UserDefault::sideBarGroup2, "sideBarGroup2", "sideBarGroup2", std::string_view{}},
    {UserDefault::sideBarGroup3, "sideBarGroup3", "sideBarGroup3", std::string_view{}},
    {UserDefault::sideBarGroup4, "sideBarGroup4", "sideBarGroup4", std::string_view{}},
    {UserDefault::chatUrl, "chatUrl", "chatUrl", std::string_view{}},
    {UserDefault::bardUrl, "bardUrl", "bardUrl", std::string_view{}},
    {UserDefault::bitUrl, "bitUrl", "bitUrl", std::string_view{}},
    {UserDefault::gitUrl, "gitUrl", "gitUrl", std::string_view{}},
    {UserDefault::hemingwayUrl, "hemingwayUrl", "hemingwayUrl", std::string_view{}},
    {UserDefault::jiraUrl, "jiraUrl", "jiraUrl", std::string_view{}},
    {UserDefault::searchKey, "searchBarKey", "searchKey", std::string_view{}},
    {UserDefault::searchBarSearches, "searchBarRecentSearches", "", std::string_view{}},
    {UserDefault::markdownString, "markDownString", "markdownString", std::string_view{}},
});
static_assert(std::ranges::all_of(settingRows, [](const auto& row) {
  return &row - settingRows.data() == static_cast<std::ptrdiff_t>(row.setting);
}));
static_assert(settingRows.size() == static_cast<std::size_t>(UserDefault::markdownString) + 1);

constexpr const SettingRow& settingRow(UserDefault setting) noexcept {
  return settingRows[static_cast<std::size_t>(setting)];
}

/// The key in the settings domain.
constexpr std::string_view rawValue(UserDefault setting) noexcept { return settingRow(setting).key; }

/// `fromRawValue<UserDefault>(key)`: the setting stored under `key`, if there is one.
template <std::same_as<UserDefault> Setting>
constexpr std::optional<Setting> fromRawValue(std::string_view key) noexcept {
  const auto* const found = std::ranges::find(settingRows, key, &SettingRow::key);
  if (found == settingRows.end()) return std::nullopt;
  return found->setting;
}

}  // namespace velkin
