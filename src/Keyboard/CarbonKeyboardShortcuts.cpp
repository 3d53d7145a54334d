#include "Keyboard/CarbonKeyboardShortcuts.h"

#include "Keyboard/KeyboardShortcuts.h"
#include "Platform/FatalError.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

namespace velkin::CarbonKeyboardShortcuts {

using namespace platform;

namespace {

struct HotKey {
  Shortcut shortcut;
  std::uint32_t carbonHotKeyId;
  /// Nothing while it is unregistered for a time.
  std::optional<EventHotKeyRef> carbonHotKey;
  Action onKeyDown;
  Action onKeyUp;
};

struct State {
  std::map<std::uint32_t, HotKey> hotKeys;
  std::uint32_t hotKeyId = 0;
  std::optional<EventHandlerRef> eventHandler;
};

State& state() {
  static State state;
  return state;
}

constexpr std::array hotKeyEventTypes = {EventTypeSpec{kEventClassKeyboard, kEventHotKeyPressed},
                                         EventTypeSpec{kEventClassKeyboard, kEventHotKeyReleased}};
constexpr std::array rawKeyEventTypes = {EventTypeSpec{kEventClassKeyboard, kEventRawKeyDown},
                                         EventTypeSpec{kEventClassKeyboard, kEventRawKeyUp}};

void letGo(HotKey& hotKey) {
  if (const auto ref = std::exchange(hotKey.carbonHotKey, std::nullopt))
    GetEventDispatcherTarget().UnregisterEventHotKey(*ref);
}

void softUnregisterAll() {
  for (auto& [id, hotKey] : state().hotKeys) letGo(hotKey);
}

void softRegisterAll() {
  auto& hotKeys = state().hotKeys;
  for (auto entry = hotKeys.begin(); entry != hotKeys.end();) {
    auto& hotKey = entry->second;
    const auto ref = GetEventDispatcherTarget().RegisterEventHotKey(hotKey.shortcut.combination(),
                                                                    {hotKeySignature, hotKey.carbonHotKeyId});
    // One that was still registered gives its old registration back, behind the new one: so nobody else can
    // come between.
    letGo(hotKey);
    if (ref) {
      hotKey.carbonHotKey = *ref;
      ++entry;
    } else {
      entry = hotKeys.erase(entry);
    }
  }
}

void setUpEventHandlerIfNeeded() {
  if (state().eventHandler) return;
  const auto handler = GetEventDispatcherTarget().InstallEventHandler(handleEvent, {});
  if (!handler) return;
  state().eventHandler = *handler;
  updateEventHandler();
}

OSStatus act(const HotKey& hotKey, bool isDown) {
  // Copies: the action may unregister the hot key.
  const auto action = isDown ? hotKey.onKeyDown : hotKey.onKeyUp;
  const auto shortcut = hotKey.shortcut;
  action(shortcut);
  return noErr;
}

OSStatus handleHotKeyEvent(const CarbonEvent& event) {
  const auto id = GetEventParameter(event.hotKeyID);
  if (!id) return id.error();
  const auto found = state().hotKeys.find(id->id);
  if (id->signature != hotKeySignature || found == state().hotKeys.end()) return eventNotHandledErr;
  return act(found->second, GetEventKind(event) == kEventHotKeyPressed);
}

OSStatus handleRawKeyEvent(const CarbonEvent& event) {
  const auto keyCode = GetEventParameter(event.keyCode);
  if (!keyCode) return keyCode.error();
  const auto keyModifiers = GetEventParameter(event.keyModifiers);
  if (!keyModifiers) return keyModifiers.error();
  const Shortcut shortcut(static_cast<int>(*keyCode), static_cast<int>(*keyModifiers));
  const auto& hotKeys = state().hotKeys;
  const auto found = std::find_if(hotKeys.begin(), hotKeys.end(),
                                  [&](const auto& entry) { return entry.second.shortcut == shortcut; });
  if (found == hotKeys.end()) return eventNotHandledErr;
  return act(found->second, GetEventKind(event) == kEventRawKeyDown);
}

template <class Type>
std::optional<Type> valueIn(const PropertyListValue::Dictionary& dictionary, std::string_view key) {
  const auto found = dictionary.find(key);
  const auto* value = found == dictionary.end() ? nullptr : found->second.as<Type>();
  return value == nullptr ? std::nullopt : std::optional(*value);
}

}  // namespace

void registerShortcut(const Shortcut& shortcut, Action onKeyDown, Action onKeyUp) {
  const auto id = ++state().hotKeyId;
  const auto ref =
      GetEventDispatcherTarget().RegisterEventHotKey(shortcut.combination(), {hotKeySignature, id});
  if (!ref) return;
  state().hotKeys.emplace(id, HotKey{shortcut, id, *ref, std::move(onKeyDown), std::move(onKeyUp)});
  setUpEventHandlerIfNeeded();
}

void unregister(const Shortcut& shortcut) {
  auto& hotKeys = state().hotKeys;
  for (auto entry = hotKeys.begin(); entry != hotKeys.end();) {
    if (entry->second.shortcut == shortcut) {
      letGo(entry->second);
      entry = hotKeys.erase(entry);
    } else {
      ++entry;
    }
  }
}

void unregisterAll() {
  softUnregisterAll();
  state().hotKeys.clear();
}

bool isRegistered(const Shortcut& shortcut) {
  const auto& hotKeys = state().hotKeys;
  return std::any_of(hotKeys.begin(), hotKeys.end(),
                     [&](const auto& entry) { return entry.second.shortcut == shortcut; });
}

void updateEventHandler() {
  if (!state().eventHandler) return;
  auto& target = GetEventDispatcherTarget();
  const auto handler = *state().eventHandler;
  if (!KeyboardShortcuts::isEnabled()) {
    softUnregisterAll();
    target.RemoveEventTypesFromHandler(handler, hotKeyEventTypes);
    target.RemoveEventTypesFromHandler(handler, rawKeyEventTypes);
    return;
  }
  if (KeyboardShortcuts::isMenuOpen()) {
    softUnregisterAll();
    target.RemoveEventTypesFromHandler(handler, hotKeyEventTypes);
    target.AddEventTypesToHandler(handler, rawKeyEventTypes);
  } else {
    softRegisterAll();
    target.RemoveEventTypesFromHandler(handler, rawKeyEventTypes);
    target.AddEventTypesToHandler(handler, hotKeyEventTypes);
  }
}

OSStatus handleEvent(const CarbonEvent* event) {
  if (event == nullptr) return eventNotHandledErr;
  switch (GetEventKind(*event)) {
    case kEventHotKeyPressed:
    case kEventHotKeyReleased:
      return handleHotKeyEvent(*event);
    case kEventRawKeyDown:
    case kEventRawKeyUp:
      return handleRawKeyEvent(*event);
    default:
      return eventNotHandledErr;
  }
}

std::vector<Shortcut> system() {
  const auto symbolic = GetEventDispatcherTarget().CopySymbolicHotKeys();
  if (!symbolic) {
    assertionFailure("Could not get system keyboard shortcuts");
    return {};
  }
  std::vector<Shortcut> shortcuts;
  for (const auto& dictionary : *symbolic) {
    const auto code = valueIn<std::int64_t>(dictionary, "kHISymbolicHotKeyCode");
    const auto modifiers = valueIn<std::int64_t>(dictionary, "kHISymbolicHotKeyModifiers");
    if (!valueIn<bool>(dictionary, "kHISymbolicHotKeyEnabled").value_or(false) || !code || !modifiers)
      continue;
    shortcuts.emplace_back(static_cast<int>(*code), static_cast<int>(*modifiers));
  }
  return shortcuts;
}

void shutDown() {
  unregisterAll();
  if (const auto handler = state().eventHandler) GetEventDispatcherTarget().RemoveEventHandler(*handler);
  state() = {};
}

}  // namespace velkin::CarbonKeyboardShortcuts
