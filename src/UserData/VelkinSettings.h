#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velkin {

/// The settings document: a flat copy of the settings, each of which may be absent. It holds the API key in
/// clear. The fields stand in the order of the table of settings, and bear the names of its document keys.
struct VelkinSettings {
  std::optional<bool> experimentalEnabled{};
  std::optional<bool> showToolBar{};
  std::optional<bool> startAtLogin{};
  std::optional<bool> stickyMenu{};
  std::optional<bool> hemingwayEnabled{};
  std::optional<bool> isAlternateViewVisible{};
  std::optional<bool> isDarkMode{};
  std::optional<bool> onboardingCompleted{};
  std::optional<std::string> onboardingChatURL{};
  std::optional<std::int64_t> releaseNoteBuildVersion{};
  std::optional<double> webViewHeight{};
  std::optional<double> webViewWidth{};
  std::optional<double> webViewFSToggleHeight{};
  std::optional<double> webViewFSToggleWidth{};
  std::optional<double> webViewZoom{};
  std::optional<std::int64_t> lastVisibleWebView{};
  std::optional<std::int64_t> lastTimeChatGPTVisible{};
  std::optional<std::string> sideBarGroup1{};
  std::optional<std::string> sideBarGroup2{};
  std::optional<std::string> sideBarGroup3{};
  std::optional<std::string> sideBarGroup4{};
  std::optional<std::string> chatUrl{};
  std::optional<std::string> bardUrl{};
  std::optional<std::string> bitUrl{};
  std::optional<std::string> gitUrl{};
  std::optional<std::string> hemingwayUrl{};
  std::optional<std::string> jiraUrl{};
  std::optional<std::string> searchKey{};
  std::optional<std::string> markdownString{};

  bool operator==(const VelkinSettings&) const = default;
};

}  // namespace velkin
