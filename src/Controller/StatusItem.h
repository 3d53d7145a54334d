#pragma once

#include "Controller/PopoverContent.h"
#include "MenuHelper.h"
#include "Platform/Alive.h"
#include "Platform/NSMenu.h"
#include "Platform/NSStatusItem.h"

#include <functional>
#include <memory>

namespace velkin {

/// The status item, its menu, and what opens and closes the popover. Main thread.
class StatusItem {
 public:
  /// `actions` is told of the menu's items, `menuDelegate` of its closing; both outlive this.
  StatusItem(PopoverContent& content, MenuHelperDelegate& actions, platform::NSMenuDelegate& menuDelegate);

  platform::NSStatusBar menuBar;
  const std::unique_ptr<platform::NSStatusItem> menuBarItem;
  const std::shared_ptr<platform::NSMenu> menu;
  bool isShowingPopUpMenu = false;
  bool isDismissingPopUpMenu = false;

  /// Brings up the search bar. Set before `setUp`.
  std::function<void()> ask;

  /// Made at its first read.
  MenuHelper& menuBarHelper();

  /// Gives the icon its look, its action and its menu.
  /// Where a single click puts up the menu, what it does elsewhere stands above the other items.
  void setUp();
  /// The action of the status item's button.
  void clicked();
  void togglePopover();
  /// With `useLargeSize`, at the size of the pages that introduce the program; else at the size of the
  /// settings.
  void showPopover(bool useLargeSize);
  /// True if it was shown.
  bool closePopover();
  /// Puts up the right-click menu, or clears it while it is up.
  void toggleMenu();
  void clearMenu();
  void menuDidClose();
  /// Who closes the popover. With `force`, nobody but the program while it is shown.
  void updatePopoverBehavior(bool force);

  // The items with a check mark: each turns it round and stores it.
  void toggleSticky();
  void toggleToolbar();
  void toggleExperimental();

 private:
  void addWhatAClickDoesElsewhere();
  void open();

  PopoverContent& content_;
  MenuHelperDelegate& actions_;
  platform::NSMenuDelegate& menuDelegate_;
  UserDefaultsHelper defaults_;
  std::unique_ptr<MenuHelper> menuBarHelper_;
  /// For what comes back in a later turn.
  platform::Alive isAlive_;
};

}  // namespace velkin
