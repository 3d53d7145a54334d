#pragma once

#include "Values/WebViewSwitchType.h"

#include <optional>

namespace velkin {

/// A stored arrangement of views: a main view, up to two sidebars beside it, and whether it opens full
/// screen.
struct SidebarGroup {
  bool isFullScreen = false;
  WebViewSwitchType mainView = WebViewSwitchType::chatgpt;
  std::optional<WebViewSwitchType> sideBar1 = std::nullopt;
  std::optional<WebViewSwitchType> sideBar2 = std::nullopt;

  bool operator==(const SidebarGroup&) const = default;
};

}  // namespace velkin
