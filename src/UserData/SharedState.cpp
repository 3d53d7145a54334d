#include "UserData/SharedState.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velkin {

namespace {

using enum WebViewSwitchType;

constexpr std::array<std::pair<WebViewSwitchType, platform::Published<bool> SharedState::*>, 7> sidebarFlags =
    {{{bard, &SharedState::isBarding},
      {bitbucket, &SharedState::isBitBucketing},
      {chatgpt, &SharedState::isChatting},
      {gitlab, &SharedState::isGitLabing},
      {hemingway, &SharedState::isHemingwaying},
      {jira, &SharedState::isJiring},
      {markdown, &SharedState::isMarking}}};

}  // namespace

platform::Published<bool>* SharedState::sidebarFlag(WebViewSwitchType view) noexcept {
  for (const auto& [owner, flag] : sidebarFlags) {
    if (owner == view) return &(this->*flag);
  }
  return nullptr;
}

const platform::Published<bool>* SharedState::sidebarFlag(WebViewSwitchType view) const noexcept {
  return const_cast<SharedState*>(this)->sidebarFlag(view);
}

bool SharedState::hasSidebars() const {
  return std::ranges::any_of(sidebarFlags, [this](const auto& row) { return (this->*row.second).get(); });
}

}  // namespace velkin
