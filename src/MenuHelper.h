#pragma once

#include "Platform/NSMenu.h"
#include "Values/MenuHelperDelegate.h"

#include <memory>
#include <string>
#include <vector>

namespace velkin {

/// The status menu: its items, which states they start with, and whom they tell. Main thread.
class MenuHelper {
 public:
  using Item = std::shared_ptr<platform::NSMenuItem>;

  /// `menuDelegate` outlives the items; without one, they do nothing.
  explicit MenuHelper(MenuHelperDelegate* menuDelegate);

  const Item versionMenuItem;
  const Item aboutMenuItem;
  const Item showToolbarMenuItem;
  const Item shortcutsMenuItem;
  const Item preferencesMenuItem;
  /// Stands in no list.
  const Item previewMenuItem;
  const Item appearanceMenuItem;
  /// Hidden.
  const Item experimentalMenuItem;
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
