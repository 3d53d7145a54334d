#include "Keyboard/Shortcut.h"

#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Platform/NSApplication.h"
#include "extenstions/LetterCase.h"

#include <algorithm>
#include <limits>

#include <nlohmann/json.hpp>

namespace velkin::KeyboardShortcuts {

namespace {

constexpr const char* keyCodeField = "carbonKeyCode";
constexpr const char* modifiersField = "carbonModifiers";

std::optional<int> integerField(const nlohmann::json& object, const char* field) {
  const auto found = object.find(field);
  if (found == object.end() || !found->is_number()) return std::nullopt;
  const auto number = found->get<double>();
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
    return std::nullopt;
  const auto integer = static_cast<int>(number);
  // A number that was written with a fraction of zero is an integer too.
  return integer == number ? std::optional(integer) : std::nullopt;
}

}  // namespace

Shortcut::Shortcut(int carbonKeyCode, int carbonModifiers)
    : carbonKeyCode_(carbonKeyCode),
      carbonModifiers_(static_cast<int>(carbon(modifierFlags(static_cast<std::uint32_t>(carbonModifiers))))) {
}

Shortcut::Shortcut(Key key, ModifierFlags modifiers)
    : carbonKeyCode_(key.rawValue), carbonModifiers_(static_cast<int>(carbon(modifiers))) {}

std::optional<Shortcut> Shortcut::fromEvent(const platform::NSEvent& event) {
  using enum platform::NSEvent::EventType;
  if (event.type != keyDown && event.type != keyUp) return std::nullopt;
  return Shortcut(Key{event.keyCode}, event.modifierFlags);
}

std::optional<Shortcut> Shortcut::fromName(const Name& name) { return getShortcut(name); }

ModifierFlags Shortcut::modifiers() const noexcept {
  return modifierFlags(static_cast<std::uint32_t>(carbonModifiers_));
}

platform::HotKeyCombination Shortcut::combination() const noexcept {
  return {static_cast<std::uint32_t>(carbonKeyCode_), static_cast<std::uint32_t>(carbonModifiers_)};
}

bool Shortcut::isTakenBySystem() const {
  if (*this == Shortcut(Key::f12)) return false;
  const auto system = CarbonKeyboardShortcuts::system();
  if (std::find(system.begin(), system.end(), *this) != system.end()) return true;
  // Most desktops here tell of no list, but each combination can be tried.
  return platform::GetEventDispatcherTarget().isHeldByAnother(combination());
}

std::shared_ptr<platform::NSMenuItem> Shortcut::takenByMainMenu() const {
  const auto& mainMenu = platform::NSApp().mainMenu;
  return mainMenu ? menuItemWithMatchingShortcut(*mainMenu) : nullptr;
}

std::shared_ptr<platform::NSMenuItem> Shortcut::menuItemWithMatchingShortcut(
    const platform::NSMenu& menu) const {
  for (const auto& item : menu.items()) {
    auto itemModifiers = modifierFlags(carbon(item->keyEquivalentModifierMask()));
    const auto character = lowercased(item->keyEquivalent());
    if (character != item->keyEquivalent()) itemModifiers |= platform::NSEvent::shiftFlag;
    if (character == keyToCharacter() && itemModifiers == modifiers()) return item;
    if (!item->submenu) continue;
    if (auto found = menuItemWithMatchingShortcut(*item->submenu)) return found;
  }
  return nullptr;
}

std::string Shortcut::description() const {
  const auto character = keyToCharacter();
  return modifierSymbols(modifiers()) + (character ? uppercased(*character) : "�");
}

std::string Shortcut::json() const {
  return nlohmann::ordered_json{{keyCodeField, carbonKeyCode_}, {modifiersField, carbonModifiers_}}.dump();
}

std::optional<Shortcut> Shortcut::fromJSON(std::string_view text) {
  const auto object = nlohmann::json::parse(text, nullptr, false);
  if (!object.is_object()) return std::nullopt;
  const auto keyCode = integerField(object, keyCodeField);
  const auto modifiers = integerField(object, modifiersField);
  if (!keyCode || !modifiers) return std::nullopt;
  return Shortcut(*keyCode, *modifiers);
}

}  // namespace velkin::KeyboardShortcuts
