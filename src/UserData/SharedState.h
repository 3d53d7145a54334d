#pragma once

#include "Platform/View/ObservableObject.h"
#include "Values/WebViewSwitchType.h"

namespace velkin {

/// What is on screen at the moment, as the controller tells it to the views. One for the application; only
/// the main thread writes it. The flags of the views are not kept beyond the process.
class SharedState : public platform::ObservableObject {
 public:
  platform::Published<bool> showToolbar{*this, true};
  platform::Published<bool> isSearching{*this, false};
  platform::Published<bool> isBarding{*this, false};
  platform::Published<bool> isBitBucketing{*this, false};
  platform::Published<bool> isChatting{*this, false};
  platform::Published<bool> isGitLabing{*this, false};
  platform::Published<bool> isHemingwaying{*this, false};
  platform::Published<bool> isJiring{*this, false};
  platform::Published<bool> isMarking{*this, false};

  /// Whether the view stands in a sidebar; nullptr for a view that can't.
  platform::Published<bool>* sidebarFlag(WebViewSwitchType view) noexcept;
  const platform::Published<bool>* sidebarFlag(WebViewSwitchType view) const noexcept;
  /// Any view does.
  bool hasSidebars() const;
};

}  // namespace velkin
