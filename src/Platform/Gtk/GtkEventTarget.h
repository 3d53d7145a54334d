#pragma once

#include "Platform/CarbonEvents.h"
#include "Platform/Gtk/HotKeyGrabs.h"

#include <functional>
#include <map>
#include <memory>

namespace platform {

/// Registrations of hot keys on top of one desktop's grabs. Main thread.
class GtkEventTarget : public EventTarget {
 public:
  using MakeGrabs = std::function<std::unique_ptr<HotKeyGrabs>(HotKeyGrabs::OnKey)>;

  /// `makeGrabs` is called at the first need.
  explicit GtkEventTarget(MakeGrabs makeGrabs);
  ~GtkEventTarget() override;

  tl::expected<EventHotKeyRef, OSStatus> RegisterEventHotKey(HotKeyCombination combination,
                                                             EventHotKeyID id) override;
  OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey) override;
  /// Empty: no desktop here tells of a list; `isHeldByAnother` tries a combination instead.
  std::optional<std::vector<PropertyListValue::Dictionary>> CopySymbolicHotKeys() override;
  bool isHeldByAnother(HotKeyCombination combination) override;
  void describeHotKey(HotKeyCombination combination, std::string_view name, std::string_view title) override;
  std::optional<HotKeyNotice> notice() override { return grabs().notice(); }
  std::optional<std::string> grantedTrigger(std::string_view name) override {
    return grabs().grantedTrigger(name);
  }
  std::function<void()> settingsOpener() override { return grabs().settingsOpener(); }

 private:
  struct Registration {
    HotKeyCombination combination;
    EventHotKeyID id;
  };
  HotKeyGrabs& grabs();
  bool isRegistered(HotKeyCombination combination) const;
  void send(HotKeyCombination combination, bool isDown, Activation activation);

  MakeGrabs makeGrabs_;
  std::unique_ptr<HotKeyGrabs> grabs_;
  std::map<EventHotKeyRef, Registration> registrations_;
  EventHotKeyRef lastRef_ = 0;
};

}  // namespace platform
