#pragma once

#include "Platform/PropertyList.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <tl/expected.hpp>

namespace platform {

using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus eventParameterNotFoundErr = -9870;
inline constexpr OSStatus eventNotHandledErr = -9874;
/// Somebody else holds the combination.
inline constexpr OSStatus eventHotKeyExistsErr = -9878;
/// There is no such registration, or no such key on this desktop.
inline constexpr OSStatus eventHotKeyInvalidErr = -9879;

/// Four ASCII characters as one number, the first one in the highest byte.
constexpr std::uint32_t fourCharCode(const char (&text)[5]) {
  std::uint32_t code = 0;
  for (int i = 0; i < 4; ++i) code = code << 8U | static_cast<unsigned char>(text[i]);
  return code;
}

/// The bits of a hot key's modifiers. In this house Command is the Ctrl key, Option Alt, Control Super.
namespace carbon {
inline constexpr std::uint32_t cmdKey = 0x100;
inline constexpr std::uint32_t shiftKey = 0x200;
inline constexpr std::uint32_t optionKey = 0x800;
inline constexpr std::uint32_t controlKey = 0x1000;
}  // namespace carbon

struct EventTypeSpec {
  std::uint32_t eventClass;
  std::uint32_t eventKind;
  bool operator==(const EventTypeSpec&) const = default;
};

inline constexpr std::uint32_t kEventClassKeyboard = fourCharCode("keyb");
inline constexpr std::uint32_t kEventRawKeyDown = 1;
inline constexpr std::uint32_t kEventRawKeyUp = 3;
inline constexpr std::uint32_t kEventHotKeyPressed = 5;
inline constexpr std::uint32_t kEventHotKeyReleased = 6;

/// Whose hot key it is, and which of theirs.
struct EventHotKeyID {
  std::uint32_t signature;
  std::uint32_t id;
  bool operator==(const EventHotKeyID&) const = default;
};

/// A key's position as a virtual key code, and the modifiers that go with it.
struct HotKeyCombination {
  std::uint32_t keyCode;
  std::uint32_t modifiers;
  bool operator==(const HotKeyCombination&) const = default;
  /// For tables.
  bool operator<(const HotKeyCombination& other) const noexcept {
    return std::tie(keyCode, modifiers) < std::tie(other.keyCode, other.modifiers);
  }
};

/// An event on its way to the handlers, with the parameters that it has.
struct CarbonEvent {
  std::uint32_t eventClass = kEventClassKeyboard;
  std::uint32_t kind = 0;
  /// Of a hot key event: the direct object.
  std::optional<EventHotKeyID> hotKeyID = std::nullopt;
  /// Of a raw key event.
  std::optional<std::uint32_t> keyCode = std::nullopt;
  std::optional<std::uint32_t> keyModifiers = std::nullopt;
};

std::uint32_t GetEventKind(const CarbonEvent& event) noexcept;
/// The parameter, or `eventParameterNotFoundErr`.
template <class Parameter>
tl::expected<Parameter, OSStatus> GetEventParameter(const std::optional<Parameter>& parameter) {
  if (!parameter) return tl::unexpected(eventParameterNotFoundErr);
  return *parameter;
}

using EventHandlerRef = int;
using EventHotKeyRef = int;

/// What the user has to know, and can do, where the desktop hands out no hot keys.
struct HotKeyNotice {
  struct Command {
    std::string what;
    /// To be bound to a key in the desktop's own settings.
    std::string commandLine;
  };
  std::string text;
  std::vector<Command> commands;
};

/// Where keyboard events of the whole desktop arrive, and where keys are asked for. Main thread.
class EventTarget {
 public:
  /// Returns `noErr` for an event that it has taken. Never called with nullptr by the target itself.
  using Handler = std::function<OSStatus(const CarbonEvent*)>;

  virtual ~EventTarget() = default;

  virtual tl::expected<EventHandlerRef, OSStatus> InstallEventHandler(Handler handler,
                                                                      std::span<const EventTypeSpec> types);
  void RemoveEventHandler(EventHandlerRef handler);
  void AddEventTypesToHandler(EventHandlerRef handler, std::span<const EventTypeSpec> types);
  void RemoveEventTypesFromHandler(EventHandlerRef handler, std::span<const EventTypeSpec> types);

  /// Asks the desktop for a combination of keys, wherever the focus is. One that this program holds already
  /// may be asked for again: it is let go with its last registration. A refused one has left nothing behind.
  virtual tl::expected<EventHotKeyRef, OSStatus> RegisterEventHotKey(HotKeyCombination combination,
                                                                     EventHotKeyID id) = 0;
  virtual OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey) = 0;

  /// What the desktop tells of its own combinations: dictionaries with "kHISymbolicHotKeyEnabled",
  /// "kHISymbolicHotKeyCode" and "kHISymbolicHotKeyModifiers". Nothing if it can't be asked.
  virtual std::optional<std::vector<PropertyListValue::Dictionary>> CopySymbolicHotKeys() = 0;
  /// For desktops that tell of no list: true if this one combination is held by somebody else at the moment.
  virtual bool isHeldByAnother(HotKeyCombination combination) = 0;

  /// How a combination that will be asked for is called, for desktops on which the user grants it: a name
  /// that stays the same over restarts, and a title for people.
  virtual void describeHotKey(HotKeyCombination, std::string_view /*name*/, std::string_view /*title*/) {}
  virtual std::optional<HotKeyNotice> notice() { return std::nullopt; }
  /// What the user has bound to the name in the desktop's own dialogue, in the desktop's words; empty for
  /// nothing. nullopt where a program asks for keys itself.
  virtual std::optional<std::string> grantedTrigger(std::string_view /*name*/) { return std::nullopt; }
  /// Opens the desktop's own settings of keys, where it hands them out; empty where no way there is known.
  virtual std::function<void()> settingsOpener() { return {}; }

  /// Hands an event to the handlers that want its type, the newest first, until one takes it.
  OSStatus sendEvent(const CarbonEvent& event);
  bool isWanted(EventTypeSpec type) const;

 private:
  struct Entry {
    EventHandlerRef ref;
    Handler handler;
    std::vector<EventTypeSpec> types;
  };
  Entry* find(EventHandlerRef handler);

  std::vector<Entry> handlers_;
  EventHandlerRef lastHandler_ = 0;
};

/// The target of the installed platform.
EventTarget& GetEventDispatcherTarget();

}  // namespace platform
