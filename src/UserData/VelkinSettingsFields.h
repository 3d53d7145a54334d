#pragma once

#include "UserData/VelkinSettings.h"
#include "Values/UserDefault.h"

#include <array>
#include <variant>

namespace velkin {

/// A field of the document and the setting that it copies.
struct VelkinSettingsField {
  UserDefault setting;
  std::variant<std::optional<bool> VelkinSettings::*, std::optional<std::int64_t> VelkinSettings::*,
               std::optional<double> VelkinSettings::*, std::optional<std::string> VelkinSettings::*>
      member;
};

/// All of them, in the document's order.
inline constexpr auto velkinSettingsFields = std::to_array<VelkinSettingsField>({
    {UserDefault::experimentalEnabled, &VelkinSettings::experimentalEnabled},
    {UserDefault::showToolBar, &VelkinSettings::showToolBar},
    {UserDefault::startAtLogin, &VelkinSettings::startAtLogin},
    {UserDefault::stickyMenu, &VelkinSettings::stickyMenu},
    {UserDefault::hemingwayEnabled, &VelkinSettings::hemingwayEnabled},
    {UserDefault::isAlternateViewVisible, &VelkinSettings::isAlternateViewVisible},
    {UserDefault::isDarkMode, &VelkinSettings::isDarkMode},
    {UserDefault::onboardingCompleted, &VelkinSettings::onboardingCompleted},
    {UserDefault::onboardingChatURL, &VelkinSettings::onboardingChatURL},
    {UserDefault::releaseNoteBuildVersion, &VelkinSettings::releaseNoteBuildVersion},
    {UserDefault::webViewHeight, &VelkinSettings::webViewHeight},
    {UserDefault::webViewWidth, &VelkinSettings::webViewWidth},
    {UserDefault::webViewFSToggleHeight, &VelkinSettings::webViewFSToggleHeight},
    {UserDefault::webViewFSToggleWidth, &VelkinSettings::webViewFSToggleWidth},
    {UserDefault::webViewZoom, &VelkinSettings::webViewZoom},
    {UserDefault::lastVisibleWebView, &VelkinSettings::lastVisibleWebView},
    {UserDefault::lastTimeChatGPTVisible, &VelkinSettings::lastTimeChatGPTVisible},
    {UserDefault::sideBarGroup1, &VelkinSettings::sideBarGroup1},
    {UserDefault::sideBarGroup2, &VelkinSettings::sideBarGroup2},
    {UserDefault::sideBarGroup3, &VelkinSettings::sideBarGroup3},
    {UserDefault::sideBarGroup4, &VelkinSettings::sideBarGroup4},
    {UserDefault::chatUrl, &VelkinSettings::chatUrl},
    {UserDefault::bardUrl, &VelkinSettings::bardUrl},
    {UserDefault::bitUrl, &VelkinSettings::bitUrl},
    {UserDefault::gitUrl, &VelkinSettings::gitUrl},
    {UserDefault::hemingwayUrl, &VelkinSettings::hemingwayUrl},
    {UserDefault::jiraUrl, &VelkinSettings::jiraUrl},
    {UserDefault::searchKey, &VelkinSettings::searchKey},
    {UserDefault::markdownString, &VelkinSettings::markdownString},
});

}  // namespace velkin
