#pragma once

#include "Platform/CarbonEvents.h"
#include "Platform/Gtk/Activation.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// One way of getting keys from a desktop wherever the focus is. Main thread.
class HotKeyGrabs {
 public:
  using OnKey = std::function<void(HotKeyCombination combination, bool isDown, Activation activation)>;

  virtual ~HotKeyGrabs() = default;

  /// Never called for a combination that is grabbed already.
  virtual OSStatus grab(HotKeyCombination combination) = 0;
  virtual void ungrab(HotKeyCombination combination) = 0;
  virtual bool isHeldByAnother(HotKeyCombination combination) = 0;
  /// As `EventTarget::describeHotKey`.
  virtual void describe(HotKeyCombination, std::string_view /*name*/, std::string_view /*title*/) {}
  virtual std::optional<HotKeyNotice> notice() { return std::nullopt; }
  /// As `EventTarget::grantedTrigger`.
  virtual std::optional<std::string> grantedTrigger(std::string_view /*name*/) { return std::nullopt; }
  /// As `EventTarget::settingsOpener`.
  virtual std::function<void()> settingsOpener() { return {}; }
};

}  // namespace platform
