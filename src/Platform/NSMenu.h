#pragma once

#include "Platform/View/Observers.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class NSMenu;

/// One row of a menu. Changes show at once where the menu is on screen.
class NSMenuItem {
 public:
  enum class State { off = 0, on = 1, mixed = -1 };

  static constexpr std::uint32_t shiftMask = 0x20000;
  static constexpr std::uint32_t controlMask = 0x40000;
  static constexpr std::uint32_t optionMask = 0x80000;
  static constexpr std::uint32_t commandMask = 0x100000;

  /// A key equivalent stands for the key with Command; an upper case letter asks for Shift as well. It is a
  /// label only: the keys are the router's.
  explicit NSMenuItem(std::string title, std::function<void()> action = {}, std::string keyEquivalent = {});
  static std::shared_ptr<NSMenuItem> separator();

  const std::string& title() const noexcept { return title_; }
  const std::string& keyEquivalent() const noexcept { return keyEquivalent_; }
  std::uint32_t keyEquivalentModifierMask() const noexcept { return modifierMask_; }
  State state() const noexcept { return state_; }
  /// True once a state was set: it has a check mark, on or off.
  bool isCheckable() const noexcept { return isCheckable_; }
  bool isEnabled() const noexcept { return isEnabled_; }
  bool isHidden() const noexcept { return isHidden_; }
  bool isSeparatorItem() const noexcept { return isSeparator_; }

  void setTitle(std::string title);
  void setKeyEquivalentModifierMask(std::uint32_t mask);
  void setState(State state);
  void setEnabled(bool isEnabled);
  void setHidden(bool isHidden);

  /// What the item's choice does; nothing for an item that only tells.
  std::function<void()> action;
  /// Whom the action is for; it isn't owned and not used but for comparison.
  const void* target = nullptr;
  /// The menu that the item opens; nullptr for an item that acts.
  std::shared_ptr<NSMenu> submenu;

  Observers& observers() noexcept { return observers_; }

 private:
  template <class T>
  void change(T& field, T value);

  std::string title_;
  std::string keyEquivalent_;
  std::uint32_t modifierMask_ = commandMask;
  State state_ = State::off;
  bool isEnabled_ = true;
  bool isHidden_ = false;
  bool isSeparator_ = false;
  bool isCheckable_ = false;
  Observers observers_;
};

/// Told of a menu's closing. Main thread.
class NSMenuDelegate {
 public:
  virtual ~NSMenuDelegate() = default;
  virtual void menuDidClose(NSMenu& menu) = 0;
};

class NSMenu {
 public:
  std::string title;
  /// Whether an item without a way to act greys itself out.
  bool autoenablesItems = true;
  NSMenuDelegate* delegate = nullptr;

  void addItem(std::shared_ptr<NSMenuItem> item);
  const std::vector<std::shared_ptr<NSMenuItem>>& items() const noexcept { return items_; }
  /// Items that came or went.
  Observers& observers() noexcept { return observers_; }

 private:
  std::vector<std::shared_ptr<NSMenuItem>> items_;
  Observers observers_;
};

}  // namespace platform
