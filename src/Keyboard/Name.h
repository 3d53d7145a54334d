#pragma once

#include "Keyboard/Shortcut.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <tuple>

namespace velkin::KeyboardShortcuts {

/// Under which a shortcut is stored: a plain value. Main thread.
class Name {
 public:
  /// Stores the default if nothing is stored under the name yet; so a default that a later version changes
  /// reaches only users who have no entry.
  explicit Name(std::string rawValue, std::optional<Shortcut> defaultShortcut = std::nullopt);

  /// The program's own: opens and closes the popover.
  static Name popUpShortcut();
  /// The program's own: opens and closes the search bar.
  static Name searchBarShortcut();

  const std::string& rawValue() const noexcept { return rawValue_; }
  const std::optional<Shortcut>& defaultShortcut() const noexcept { return defaultShortcut_; }
  /// What is stored now.
  std::optional<Shortcut> shortcut() const;
  /// What a desktop that lets the user grant shortcuts calls it.
  std::string title() const;

  bool operator==(const Name&) const = default;
  /// For tables.
  bool operator<(const Name& other) const noexcept {
    return std::tie(rawValue_, defaultShortcut_) < std::tie(other.rawValue_, other.defaultShortcut_);
  }

 private:
  std::string rawValue_;
  std::optional<Shortcut> defaultShortcut_;
};

}  // namespace velkin::KeyboardShortcuts

template <>
struct std::hash<velkin::KeyboardShortcuts::Name> {
  std::size_t operator()(const velkin::KeyboardShortcuts::Name& name) const noexcept {
    return std::hash<std::string>()(name.rawValue());
  }
};
