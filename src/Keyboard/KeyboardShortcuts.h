#pragma once

#include "Keyboard/Name.h"
#include "Keyboard/Shortcut.h"
#include "Platform/Connection.h"

#include <functional>
#include <optional>
#include <set>
#include <vector>

/// Shortcuts that work while another program is active: stored by name in the settings domain, registered
/// with the desktop by `CarbonKeyboardShortcuts`, and told to whoever asked for a name. The keys of the
/// program's own windows are the router's and have nothing to do with these. Main thread.
namespace velkin::KeyboardShortcuts {

using Action = std::function<void()>;

/// What happens to a shortcut's key.
enum class EventType { keyDown, keyUp };

/// Posted on the default notification centre after every write; the user info has the `Name` under "name".
inline constexpr const char* shortcutByNameDidChange = "KeyboardShortcuts_shortcutByNameDidChange";

/// Adds an action to the name's, and registers what is stored under it. Two names with one shortcut both act.
void onKeyDown(const Name& name, Action action);
void onKeyUp(const Name& name, Action action);

/// Streams of events: the consumer is called with each as it comes, for as long as the connection lives.
platform::Connection events(const Name& name, const std::function<void(EventType)>& consumer);
platform::Connection events(EventType type, const Name& name, std::function<void(EventType)> consumer);
platform::Connection on(EventType type, const Name& name, std::function<void()> consumer);

/// What is stored; nothing for a name that is disabled, or whose entry can't be read.
std::optional<Shortcut> getShortcut(const Name& name);
/// Stores and registers the shortcut. Nothing disables a name that has a default, so that the default doesn't
/// come back, and removes any other.
void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name);
bool userDefaultsContains(const Name& name);

/// Back to their defaults.
void reset(const std::vector<Name>& names);
/// Registers or unregisters what is stored, and leaves it stored.
void enable(const std::vector<Name>& names);
void disable(const std::vector<Name>& names);
template <class... Names>
requires(std::same_as<Names, Name>&&...) void reset(const Names&... names) {
  reset(std::vector<Name>{names...});
}
template <class... Names>
requires(std::same_as<Names, Name>&&...) void enable(const Names&... names) {
  enable(std::vector<Name>{names...});
}
template <class... Names>
requires(std::same_as<Names, Name>&&...) void disable(const Names&... names) {
  disable(std::vector<Name>{names...});
}

/// Forgets the actions of `onKeyDown` and `onKeyUp`, and unregisters what only they had needed.
void removeAllHandlers();

const std::set<Shortcut>& registeredShortcuts();
/// The shortcuts of all names that have an action or a stream.
std::set<Shortcut> shortcutsForHandlers();
std::set<Shortcut> shortcutsForLegacyHandlers();
std::set<Shortcut> shortcutsForStreamHandlers();

/// While it is true, the keys arrive and nothing acts on them.
bool isPaused();
void setIsPaused(bool isPaused);
/// While it is false, no key reaches the program, and others can have the combinations.
bool isEnabled();
void setIsEnabled(bool isEnabled);
/// A menu of the program is open: the keys come as raw key events instead.
bool isMenuOpen();
void setIsMenuOpen(bool isMenuOpen);

/// Lets go of everything, as it was before the first use; what is stored stays.
void shutDown();

}  // namespace velkin::KeyboardShortcuts
