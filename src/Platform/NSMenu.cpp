#include "Platform/NSMenu.h"

#include <utility>

namespace platform {

NSMenuItem::NSMenuItem(std::string title, std::function<void()> itemAction, std::string keyEquivalent)
    : action(std::move(itemAction)), title_(std::move(title)), keyEquivalent_(std::move(keyEquivalent)) {}

std::shared_ptr<NSMenuItem> NSMenuItem::separator() {
  auto item = std::make_shared<NSMenuItem>("");
  item->isSeparator_ = true;
  return item;
}

template <class T>
void NSMenuItem::change(T& field, T value) {
  if (field == value) return;
  field = std::move(value);
  observers_.notify();
}

void NSMenuItem::setTitle(std::string title) { change(title_, std::move(title)); }
void NSMenuItem::setKeyEquivalentModifierMask(std::uint32_t mask) { change(modifierMask_, mask); }
void NSMenuItem::setState(State state) {
  isCheckable_ = true;
  change(state_, state);
}
void NSMenuItem::setEnabled(bool isEnabled) { change(isEnabled_, isEnabled); }
void NSMenuItem::setHidden(bool isHidden) { change(isHidden_, isHidden); }

void NSMenu::addItem(std::shared_ptr<NSMenuItem> item) {
  items_.push_back(std::move(item));
  observers_.notify();
}

}  // namespace platform
