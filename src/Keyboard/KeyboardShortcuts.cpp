#include "Keyboard/KeyboardShortcuts.h"

#include "Keyboard/CarbonKeyboardShortcuts.h"
#include "Platform/NSNotificationCenter.h"
#include "Platform/NSUserDefaults.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace velkin::KeyboardShortcuts {

namespace {

/// Tells the streams of the process apart.
using UUID = std::uint64_t;
using LegacyHandlers = std::map<Name, std::vector<Action>>;
using StreamHandlers = std::map<Name, std::map<UUID, Action>>;

struct State {
  std::set<Shortcut> registeredShortcuts;
  LegacyHandlers legacyKeyDownHandlers;
  LegacyHandlers legacyKeyUpHandlers;
  StreamHandlers streamKeyDownHandlers;
  StreamHandlers streamKeyUpHandlers;
  UUID lastStream = 0;
  bool isPaused = false;
  bool isEnabled = true;
  bool isMenuOpen = false;
};

State& state() {
  static State state;
  return state;
}

platform::NSUserDefaults& userDefaults() { return platform::NSUserDefaults::standardUserDefaults(); }

std::string userDefaultsKey(const Name& name) { return "KeyboardShortcuts_" + name.rawValue(); }

void post(const Name& name) {
  platform::NSNotificationCenter::defaultCenter().post(
      {.name = shortcutByNameDidChange, .userInfo = {{"name", name}}});
}

void runLegacyActions(const Shortcut& shortcut, const LegacyHandlers& handlers) {
  // A copy: an action may change the table.
  const std::vector<LegacyHandlers::value_type> present(handlers.begin(), handlers.end());
  for (const auto& [name, actions] : present) {
    if (getShortcut(name) != shortcut) continue;
    for (const auto& action : actions) action();
  }
}

void runStreamActions(const Shortcut& shortcut, const StreamHandlers& handlers) {
  const std::vector<StreamHandlers::value_type> present(handlers.begin(), handlers.end());
  for (const auto& [name, actions] : present) {
    if (getShortcut(name) != shortcut) continue;
    for (const auto& [uuid, action] : actions) {
      // An action before this one may have ended the stream.
      const auto now = handlers.find(name);
      if (now != handlers.end() && now->second.contains(uuid)) action();
    }
  }
}

void handleOnKeyDown(const Shortcut& shortcut) {
  if (state().isPaused) return;
  runLegacyActions(shortcut, state().legacyKeyDownHandlers);
  runStreamActions(shortcut, state().streamKeyDownHandlers);
}

void handleOnKeyUp(const Shortcut& shortcut) {
  if (state().isPaused) return;
  runLegacyActions(shortcut, state().legacyKeyUpHandlers);
  runStreamActions(shortcut, state().streamKeyUpHandlers);
}

/// `name` is what it is registered for.
void registerShortcut(const Shortcut& shortcut, const Name& name) {
  platform::GetEventDispatcherTarget().describeHotKey(shortcut.combination(), name.rawValue(), name.title());
  if (state().registeredShortcuts.contains(shortcut)) return;
  CarbonKeyboardShortcuts::registerShortcut(shortcut, handleOnKeyDown, handleOnKeyUp);
  state().registeredShortcuts.insert(shortcut);
}

void unregister(const Shortcut& shortcut) {
  CarbonKeyboardShortcuts::unregister(shortcut);
  state().registeredShortcuts.erase(shortcut);
}

void registerShortcutIfNeeded(const Name& name) {
  if (const auto shortcut = getShortcut(name)) registerShortcut(*shortcut, name);
}

void unregisterShortcutIfNeeded(const Name& name) {
  const auto shortcut = getShortcut(name);
  if (shortcut && !shortcutsForHandlers().contains(*shortcut)) unregister(*shortcut);
}

void userDefaultsSet(const Name& name, const Shortcut& shortcut) {
  if (const auto earlier = getShortcut(name)) unregister(*earlier);
  // Before it is stored: an event compares with what is stored when it comes.
  registerShortcut(shortcut, name);
  userDefaults().setObject(shortcut.json(), userDefaultsKey(name));
  post(name);
}

void userDefaultsDisable(const Name& name) {
  const auto shortcut = getShortcut(name);
  if (!shortcut) return;
  userDefaults().setObject(false, userDefaultsKey(name));
  unregister(*shortcut);
  post(name);
}

void userDefaultsRemove(const Name& name) {
  const auto shortcut = getShortcut(name);
  if (!shortcut) return;
  userDefaults().removeObjectForKey(userDefaultsKey(name));
  unregister(*shortcut);
  post(name);
}

template <class Handlers>
void addShortcuts(std::set<Shortcut>& shortcuts, const Handlers& handlers) {
  for (const auto& entry : handlers) {
    if (const auto shortcut = getShortcut(entry.first)) shortcuts.insert(*shortcut);
  }
}

void removeStream(StreamHandlers& handlers, const Name& name, UUID uuid) {
  const auto found = handlers.find(name);
  if (found == handlers.end()) return;
  found->second.erase(uuid);
  if (found->second.empty()) handlers.erase(found);
}

platform::Connection stream(const Name& name, Action onDown, Action onUp) {
  const auto uuid = ++state().lastStream;
  if (onDown) state().streamKeyDownHandlers[name].emplace(uuid, std::move(onDown));
  if (onUp) state().streamKeyUpHandlers[name].emplace(uuid, std::move(onUp));
  registerShortcutIfNeeded(name);
  return platform::Connection::endingWith([name, uuid] {
    removeStream(state().streamKeyDownHandlers, name, uuid);
    removeStream(state().streamKeyUpHandlers, name, uuid);
    unregisterShortcutIfNeeded(name);
  });
}

}  // namespace

void onKeyDown(const Name& name, Action action) {
  state().legacyKeyDownHandlers[name].push_back(std::move(action));
  registerShortcutIfNeeded(name);
}

void onKeyUp(const Name& name, Action action) {
  state().legacyKeyUpHandlers[name].push_back(std::move(action));
  registerShortcutIfNeeded(name);
}

platform::Connection events(const Name& name, const std::function<void(EventType)>& consumer) {
  return stream(
      name, [consumer] { consumer(EventType::keyDown); }, [consumer] { consumer(EventType::keyUp); });
}

platform::Connection events(EventType type, const Name& name, std::function<void(EventType)> consumer) {
  return on(type, name, [type, consumer = std::move(consumer)] { consumer(type); });
}

platform::Connection on(EventType type, const Name& name, std::function<void()> consumer) {
  return type == EventType::keyDown ? stream(name, std::move(consumer), {})
                                    : stream(name, {}, std::move(consumer));
}

std::optional<Shortcut> getShortcut(const Name& name) {
  const auto text = userDefaults().stringForKey(userDefaultsKey(name));
  return text ? Shortcut::fromJSON(*text) : std::nullopt;
}

void setShortcut(const std::optional<Shortcut>& shortcut, const Name& name) {
  if (shortcut) {
    userDefaultsSet(name, *shortcut);
  } else if (name.defaultShortcut()) {
    userDefaultsDisable(name);
  } else {
    userDefaultsRemove(name);
  }
}

bool userDefaultsContains(const Name& name) {
  return userDefaults().valueForKey(userDefaultsKey(name)).has_value();
}

void reset(const std::vector<Name>& names) {
  for (const auto& name : names) setShortcut(name.defaultShortcut(), name);
}

void enable(const std::vector<Name>& names) {
  for (const auto& name : names) registerShortcutIfNeeded(name);
}

void disable(const std::vector<Name>& names) {
  for (const auto& name : names) {
    if (const auto shortcut = getShortcut(name)) unregister(*shortcut);
  }
}

void removeAllHandlers() {
  const auto streamed = shortcutsForStreamHandlers();
  for (const auto& shortcut : shortcutsForLegacyHandlers()) {
    if (!streamed.contains(shortcut)) unregister(shortcut);
  }
  state().legacyKeyDownHandlers.clear();
  state().legacyKeyUpHandlers.clear();
}

const std::set<Shortcut>& registeredShortcuts() { return state().registeredShortcuts; }

std::set<Shortcut> shortcutsForHandlers() {
  auto shortcuts = shortcutsForLegacyHandlers();
  shortcuts.merge(shortcutsForStreamHandlers());
  return shortcuts;
}

std::set<Shortcut> shortcutsForLegacyHandlers() {
  std::set<Shortcut> shortcuts;
  addShortcuts(shortcuts, state().legacyKeyDownHandlers);
  addShortcuts(shortcuts, state().legacyKeyUpHandlers);
  return shortcuts;
}

std::set<Shortcut> shortcutsForStreamHandlers() {
  std::set<Shortcut> shortcuts;
  addShortcuts(shortcuts, state().streamKeyDownHandlers);
  addShortcuts(shortcuts, state().streamKeyUpHandlers);
  return shortcuts;
}

bool isPaused() { return state().isPaused; }

void setIsPaused(bool isPaused) { state().isPaused = isPaused; }

bool isEnabled() { return state().isEnabled; }

void setIsEnabled(bool isEnabled) {
  if (std::exchange(state().isEnabled, isEnabled) != isEnabled) CarbonKeyboardShortcuts::updateEventHandler();
}

bool isMenuOpen() { return state().isMenuOpen; }

void setIsMenuOpen(bool isMenuOpen) {
  if (std::exchange(state().isMenuOpen, isMenuOpen) != isMenuOpen)
    CarbonKeyboardShortcuts::updateEventHandler();
}

void shutDown() {
  CarbonKeyboardShortcuts::shutDown();
  state() = {};
}

}  // namespace velkin::KeyboardShortcuts
