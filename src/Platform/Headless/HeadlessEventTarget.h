#pragma once

#include "Platform/CarbonEvents.h"
#include "Platform/TextInputSources.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace platform {

/// A keyboard in memory: a test presses its keys and arranges who holds what.
class HeadlessEventTarget : public EventTarget {
 public:
  struct Registration {
    HotKeyCombination combination;
    EventHotKeyID id;
  };
  struct Description {
    std::string name;
    std::string title;
    bool operator==(const Description&) const = default;
  };

  /// What is registered at the moment, by its reference.
  std::map<EventHotKeyRef, Registration> registrations;
  /// Called with each change of `registrations` right after it, for tests of an order.
  std::function<void()> onChange;
  /// Combinations of others: they are refused, and held by another.
  std::set<HotKeyCombination> heldByOthers;
  /// False: no handler can be installed.
  bool installsHandlers = true;
  std::optional<std::vector<PropertyListValue::Dictionary>> symbolicHotKeys =
      std::vector<PropertyListValue::Dictionary>{};
  std::map<HotKeyCombination, Description> descriptions;
  std::optional<HotKeyNotice> shownNotice;

  tl::expected<EventHandlerRef, OSStatus> InstallEventHandler(Handler handler,
                                                              std::span<const EventTypeSpec> types) override;
  tl::expected<EventHotKeyRef, OSStatus> RegisterEventHotKey(HotKeyCombination combination,
                                                             EventHotKeyID id) override;
  OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey) override;
  std::optional<std::vector<PropertyListValue::Dictionary>> CopySymbolicHotKeys() override {
    return symbolicHotKeys;
  }
  bool isHeldByAnother(HotKeyCombination combination) override {
    return heldByOthers.find(combination) != heldByOthers.end();
  }
  void describeHotKey(HotKeyCombination combination, std::string_view name, std::string_view title) override {
    descriptions[combination] = {std::string(name), std::string(title)};
  }
  std::optional<HotKeyNotice> notice() override { return shownNotice; }
  /// By name, on a desktop that hands keys out itself.
  std::optional<std::map<std::string, std::string, std::less<>>> grantedTriggers;
  std::optional<std::string> grantedTrigger(std::string_view name) override {
    if (!grantedTriggers) return std::nullopt;
    const auto found = grantedTriggers->find(name);
    return found == grantedTriggers->end() ? std::string() : found->second;
  }

  std::function<void()> opener;
  std::function<void()> settingsOpener() override { return opener; }

  /// The user's hands. Each returns how many hot keys there were to tell of it.
  int press(HotKeyCombination combination) { return sendHotKeys(combination, kEventHotKeyPressed); }
  int release(HotKeyCombination combination) { return sendHotKeys(combination, kEventHotKeyReleased); }
  bool isRegistered(HotKeyCombination combination) const;

 private:
  int sendHotKeys(HotKeyCombination combination, std::uint32_t kind);

  EventHotKeyRef lastRef_ = 0;
};

/// A layout as a table; a key that isn't in it gives nothing.
class HeadlessInputSource : public TISInputSource {
 public:
  struct Layout {
    std::map<std::uint16_t, std::string> characters;
    bool hasData = true;
    /// What every question is answered with, if it is an error.
    OSStatus status = noErr;
  };
  /// The letters and digits of a US keyboard that tests ask for.
  static Layout us();

  explicit HeadlessInputSource(Layout layout) : layout_(std::move(layout)) {}
  bool hasUnicodeKeyLayoutData() const override { return layout_.hasData; }
  tl::expected<std::string, OSStatus> UCKeyTranslate(std::uint16_t keyCode) const override;

 private:
  Layout layout_;
};

}  // namespace platform
