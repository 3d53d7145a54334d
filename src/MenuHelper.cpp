#include "MenuHelper.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/QKKeyboardShortcuts.h"
#include "Platform/FatalError.h"
#include "Platform/NSBundle.h"

namespace velkin {

using platform::NSMenuItem;

namespace {

constexpr std::string_view optionGlyph = "⌥";

/// An item with the row's label and key. What the row tells of modifiers beyond Command isn't part of the
/// key.
MenuHelper::Item item(QKKeyboardShortcuts row, MenuHelperDelegate* delegate,
                      void (MenuHelperDelegate::*action)()) {
  std::string key = keyEquivalent(row);
  if (key.starts_with(optionGlyph)) key.erase(0, optionGlyph.size());
  return std::make_shared<NSMenuItem>(
      std::string(rawValue(row)),
      [delegate, action] {
        if (delegate != nullptr) (delegate->*action)();
      },
      std::move(key));
}

NSMenuItem::State stateOf(bool isOn) { return isOn ? NSMenuItem::State::on : NSMenuItem::State::off; }

}  // namespace

MenuHelper::MenuHelper(MenuHelperDelegate* menuDelegate)
    : versionMenuItem(std::make_shared<NSMenuItem>(getVersionText())),
      aboutMenuItem(item(QKKeyboardShortcuts::about, menuDelegate, &MenuHelperDelegate::aboutClicked)),
      showToolbarMenuItem(
          item(QKKeyboardShortcuts::toolbar, menuDelegate, &MenuHelperDelegate::toolbarClicked)),
      shortcutsMenuItem(
          item(QKKeyboardShortcuts::shortcuts, menuDelegate, &MenuHelperDelegate::shortcutsClicked)),
      preferencesMenuItem(
          item(QKKeyboardShortcuts::preferencesMenu, menuDelegate, &MenuHelperDelegate::preferencesClicked)),
      previewMenuItem(
          item(QKKeyboardShortcuts::previewMenu, menuDelegate, &MenuHelperDelegate::previewClicked)),
      appearanceMenuItem(
          item(QKKeyboardShortcuts::appearance, menuDelegate, &MenuHelperDelegate::appearanceClicked)),
      experimentalMenuItem(item(QKKeyboardShortcuts::experimentalEnabled, menuDelegate,
                                &MenuHelperDelegate::experimentalClicked)),
      stickyMenuItem(item(QKKeyboardShortcuts::stickyMenu, menuDelegate, &MenuHelperDelegate::stickyClicked)),
      reloadMenuItem(item(QKKeyboardShortcuts::reload, menuDelegate, &MenuHelperDelegate::reloadClicked)),
      openMenuItem(item(QKKeyboardShortcuts::openBrowser, menuDelegate, &MenuHelperDelegate::openClicked)),
      quitMenuItem(item(QKKeyboardShortcuts::quit, menuDelegate, &MenuHelperDelegate::quitClicked)),
      menuItems{versionMenuItem,     NSMenuItem::separator(), aboutMenuItem,
                shortcutsMenuItem,   NSMenuItem::separator(), stickyMenuItem,
                showToolbarMenuItem, experimentalMenuItem,    NSMenuItem::separator(),
                preferencesMenuItem, appearanceMenuItem,      reloadMenuItem,
                openMenuItem,        NSMenuItem::separator(), quitMenuItem} {
  showToolbarMenuItem->setKeyEquivalentModifierMask(NSMenuItem::optionMask | NSMenuItem::commandMask);
  experimentalMenuItem->setEnabled(true);
  experimentalMenuItem->setState(NSMenuItem::State::off);
  experimentalMenuItem->setHidden(true);
  for (const auto& menuItem : menuItems) menuItem->target = menuDelegate;
  setDefaultStates();
}

void MenuHelper::setDefaultStates() {
  const UserDefaultsHelper defaults;
  stickyMenuItem->setState(stateOf(defaults.stickyMenu()));
  showToolbarMenuItem->setState(stateOf(defaults.showToolBar()));
  experimentalMenuItem->setState(stateOf(defaults.experimentalEnabled()));
  versionMenuItem->setEnabled(false);
}

std::string MenuHelper::getVersionText() {
  const auto& bundle = platform::NSBundle::main();
  return platform::unwrap(bundle.shortVersionString) + " (" + platform::unwrap(bundle.version) + ")";
}

}  // namespace velkin
