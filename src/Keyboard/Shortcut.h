#pragma once

#include "Keyboard/Key.h"
#include "Keyboard/ModifierFlags.h"
#include "Platform/CarbonEvents.h"
#include "Platform/NSEvent.h"
#include "Platform/NSMenu.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velkin::KeyboardShortcuts {

class Name;

/// A key and the modifiers that go with it: a plain value.
class Shortcut {
 public:
  /// Of the modifiers, only the four of hot keys are kept.
  Shortcut(int carbonKeyCode, int carbonModifiers);
  explicit Shortcut(Key key, ModifierFlags modifiers = 0);
  /// Of a key going down or up; nothing of any other event.
  static std::optional<Shortcut> fromEvent(const platform::NSEvent& event);
  /// What is stored under the name.
  static std::optional<Shortcut> fromName(const Name& name);

  int carbonKeyCode() const noexcept { return carbonKeyCode_; }
  int carbonModifiers() const noexcept { return carbonModifiers_; }
  Key key() const noexcept { return {carbonKeyCode_}; }
  ModifierFlags modifiers() const noexcept;
  platform::HotKeyCombination combination() const noexcept;

  bool operator==(const Shortcut&) const = default;
  /// For tables.
  bool operator<(const Shortcut& other) const noexcept { return combination() < other.combination(); }

  /// True if the desktop or another program has the combination at this moment. F12 alone never counts as
  /// taken. Main thread.
  bool isTakenBySystem() const;
  /// The item of the main menu that has the combination; nullptr without a main menu. Main thread.
  std::shared_ptr<platform::NSMenuItem> takenByMainMenu() const;
  std::shared_ptr<platform::NSMenuItem> menuItemWithMatchingShortcut(const platform::NSMenu& menu) const;

  /// The glyphs of the modifiers, then the key's character in upper case, or "�" if it has none. Main thread.
  std::string description() const;
  /// What the key is called, or gives in the layout in use; nothing if it gives nothing. Main thread.
  std::optional<std::string> keyToCharacter() const;
  /// The character by which a menu item names the key; empty for a key that it has no name for. Main thread.
  std::string keyEquivalent() const;

  /// The stored form, as in {"carbonKeyCode":17,"carbonModifiers":768}.
  std::string json() const;
  /// Nothing for any text that isn't such a form.
  static std::optional<Shortcut> fromJSON(std::string_view text);

 private:
  int carbonKeyCode_;
  int carbonModifiers_;
};

}  // namespace velkin::KeyboardShortcuts

template <>
struct std::hash<velkin::KeyboardShortcuts::Shortcut> {
  std::size_t operator()(const velkin::KeyboardShortcuts::Shortcut& shortcut) const noexcept {
    // The modifiers end below bit 13, so that no two shortcuts of real keys share a number.
    return static_cast<std::size_t>(shortcut.carbonKeyCode()) << 13U ^
           static_cast<std::size_t>(shortcut.carbonModifiers());
  }
};
