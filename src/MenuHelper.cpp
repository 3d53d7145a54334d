#include "MenuHelper.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/FatalError.h"
#include "Platform/NSBundle.h"

namespace velkin {

using platform::NSMenuItem;

namespace {

MenuHelper::Item item(const char* title, MenuHelperDelegate* delegate, void (MenuHelperDelegate::*action)(),
                      const char* keyEquivalent = "") {
  return std::make_shared<NSMenuItem>(
      title,
      [delegate, action] {
        if (delegate != nullptr) (delegate->*action)();
      },
      keyEquivalent);
}

}  // namespace

MenuHelper::MenuHelper(MenuHelperDelegate* menuDelegate)
    : versionMenuItem(std::make_shared<NSMenuItem>(getVersionText())),
      stickyMenuItem(item("Make Menu Sticky", menuDelegate, &MenuHelperDelegate::stickyClicked, "S")),
      reloadMenuItem(item("Reload", menuDelegate, &MenuHelperDelegate::reloadClicked, "r")),
      openMenuItem(item("Open In Browser", menuDelegate, &MenuHelperDelegate::openClicked, "o")),
      quitMenuItem(item("Quit", menuDelegate, &MenuHelperDelegate::quitClicked, "q")),
      menuItems{
          versionMenuItem, NSMenuItem::separator(), stickyMenuItem, NSMenuItem::separator(), reloadMenuItem,
          openMenuItem,    NSMenuItem::separator(), quitMenuItem} {
  for (const auto& menuItem : menuItems) menuItem->target = menuDelegate;
  setDefaultStates();
}

void MenuHelper::setDefaultStates() {
  const UserDefaultsHelper defaults;
  stickyMenuItem->setState(defaults.stickyMenu() ? NSMenuItem::State::on : NSMenuItem::State::off);
  versionMenuItem->setEnabled(false);
}

std::string MenuHelper::getVersionText() {
  const auto& bundle = platform::NSBundle::main();
  return platform::unwrap(bundle.shortVersionString) + " (" + platform::unwrap(bundle.version) + ")";
}

}  // namespace velkin
