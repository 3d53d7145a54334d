#pragma once

#include "Platform/NSMenu.h"

#include <memory>
#include <string>
#include <vector>

namespace velkin {

/// What the status menu's items ask for. Main thread.
class MenuHelperDelegate {
 public:
  virtual ~MenuHelperDelegate() = default;
  virtual void stickyClicked() = 0;
  virtual void reloadClicked() = 0;
  virtual void openClicked() = 0;
  virtual void quitClicked() = 0;
};

/// The status menu: its items, which states they start with, and whom they tell. Main thread.
class MenuHelper {
 public:
  using Item = std::shared_ptr<platform::NSMenuItem>;

  /// `menuDelegate` outlives the items.
  explicit MenuHelper(MenuHelperDelegate* menuDelegate);

  const Item versionMenuItem;
  const Item stickyMenuItem;
  const Item reloadMenuItem;
  const Item openMenuItem;
  const Item quitMenuItem;
  /// In the menu's order, separators included.
  const std::vector<Item> menuItems;

  /// Check marks as the settings have them.
  void setDefaultStates();
  /// The version and, in round brackets, the build number.
  static std::string getVersionText();
};

}  // namespace velkin
