#include "Values/UserDefault.h"
#include "gtest/gtest.h"

#include <set>

namespace velkin {
namespace {

struct UserDefaultRow {
  UserDefault setting;
  std::string_view key;
};

constexpr UserDefaultRow expectedRows[] = {
    {UserDefault::experimentalEnabled, "experimentalEnabled"},
    {UserDefault::showToolBar, "showToolBar"},
    {UserDefault::startAtLogin, "startAtLogin"},
    {UserDefault::stickyMenu, "stickyMenu"},
    {UserDefault::hemingwayEnabled, "hemingwayEnabled"},
    {UserDefault::isAlternateViewVisible, "isAlternateViewVisible"},
    {UserDefault::isDarkMode, "isDarkMode"},
    {UserDefault::onboardingCompleted, "onboardingCompleted"},
    {UserDefault::onboardingChatURL, "onboardingChatURL"},
    {UserDefault::releaseNoteBuildVersion, "releaseNoteVersion"},
    {UserDefault::webViewHeight, "viewHeight"},
    {UserDefault::webViewWidth, "viewWidth"},
    {UserDefault::webViewFSToggleHeight, "viewFSToggleHeight"},
    {UserDefault::webViewFSToggleWidth, "viewFSToggleWidth"},
    {UserDefault::webViewZoom, "zoomLevel"},
    {UserDefault::lastVisibleWebView, "lastVisibleWebView"},
    {UserDefault::lastTimeChatGPTVisible, "lastTimeChatGPTVisible"},
    {UserDefault::sideBarGroup1, "sideBarGroup1"},
    {UserDefault::sideBarGroup2, "sideBarGroup2"},
    {UserDefault::sideBarGroup3, "sideBarGroup3"},
    {UserDefault::sideBarGroup4, "sideBarGroup4"},
    {UserDefault::chatUrl, "chatUrl"},
    {UserDefault::bardUrl, "bardUrl"},
    {UserDefault::bitUrl, "bitUrl"},
    {UserDefault::gitUrl, "gitUrl"},
    {UserDefault::hemingwayUrl, "hemingwayUrl"},
    {UserDefault::jiraUrl, "jiraUrl"},
    {UserDefault::searchKey, "searchBarKey"},
    {UserDefault::searchBarSearches, "searchBarRecentSearches"},
    {UserDefault::markdownString, "markDownString"},
};

TEST(UserDefaultTest, everySettingHasItsKeyToTheByte) {
  ASSERT_EQ(std::size(expectedRows), settingRows.size());
  for (const auto& row : expectedRows) EXPECT_EQ(rawValue(row.setting), row.key);
}

TEST(UserDefaultTest, everyKeyGivesItsSettingBack) {
  for (const auto& row : expectedRows) EXPECT_EQ(fromRawValue<UserDefault>(row.key), row.setting);
}

TEST(UserDefaultTest, anUnknownKeyGivesNoSetting) {
  for (const auto* key : {"", "webViewZoom", "searchKey", "markdownString", "CHATURL", "chatUrl "}) {
    EXPECT_FALSE(fromRawValue<UserDefault>(key)) << key;
  }
}

TEST(UserDefaultTest, noTwoSettingsShareAKey) {
  std::set<std::string_view> keys;
  for (const auto& row : settingRows) keys.insert(row.key);
  EXPECT_EQ(keys.size(), settingRows.size());
}

}  // namespace
}  // namespace velkin
