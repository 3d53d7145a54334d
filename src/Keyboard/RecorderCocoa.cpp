#include "Keyboard/RecorderCocoa.h"

#include "Keyboard/KeyboardShortcuts.h"
#include "Keyboard/RecorderMessages.h"
#include "Platform/DispatchQueue.h"
#include "Platform/NSAlert.h"
#include "Platform/NSApplication.h"
#include "Platform/NSSound.h"
#include "Platform/UTF8.h"

#include <any>
#include <utility>

namespace velkin::KeyboardShortcuts {

using platform::NSEvent;
using enum NSEvent::EventType;

namespace {

/// Seconds.
constexpr double timeToGetTheKeyboardBack = 0.3;

/// There is one keyboard, so one control records at a time.
std::weak_ptr<RecorderCocoa>& recording() {
  static std::weak_ptr<RecorderCocoa> recorder;
  return recorder;
}

bool isFunctionKey(const NSEvent& event) {
  if (Key{event.keyCode}.isFunctionKey()) return true;
  if (!event.charactersIgnoringModifiers || event.charactersIgnoringModifiers->empty()) return false;
  std::string_view characters = *event.charactersIgnoringModifiers;
  const auto character = platform::takeCharacter(characters);
  return character && characters.empty() && NSEvent::SpecialKey{*character}.isFunctionKey();
}

}  // namespace

RecorderCocoa::RecorderCocoa(Name name, OnChange onChange)
    : onChange_(std::move(onChange)),
      observer_(platform::NSNotificationCenter::defaultCenter().addObserver(
          shortcutByNameDidChange,
          [this](const platform::NSNotification& notification) {
            const auto found = notification.userInfo.find("name");
            if (found == notification.userInfo.end()) return;
            const auto* changed = std::any_cast<Name>(&found->second);
            if (changed != nullptr && *changed == shortcutName_) showStored();
          })),
      shortcutName_(std::move(name)) {
  showStored();
}

RecorderCocoa::~RecorderCocoa() {
  didChange = {};
  controlTextDidEndEditing();
}

void RecorderCocoa::setShortcutName(Name name) {
  shortcutName_ = std::move(name);
  showStored();
}

std::string_view RecorderCocoa::placeholderString() const noexcept {
  return isRecording() ? messages::press_shortcut : messages::record_shortcut;
}

void RecorderCocoa::viewDidMoveToWindow() {
  platform::DispatchQueue::main().async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->canBecomeKey_ = true;
  });
}

void RecorderCocoa::showStored() {
  const auto shortcut = getShortcut(shortcutName_);
  setStringValue(shortcut ? shortcut->description() : std::string());
}

void RecorderCocoa::setStringValue(std::string text) {
  stringValue_ = std::move(text);
  if (didChange) didChange();
}

void RecorderCocoa::focus() {
  if (!canBecomeKey_) return;
  if (wantsKeyboard) wantsKeyboard();
  becomeFirstResponder();
}

bool RecorderCocoa::becomeFirstResponder() {
  if (isRecording()) return true;
  stopRecording();
  recording() = weak_from_this();
  setIsPaused(true);
  // A key that is grabbed comes to no window, so it couldn't be recorded for the other name, nor again.
  setIsEnabled(false);
  // One that another program has grabbed would go to that one, and nobody could say that it is taken.
  platform::NSApp().setTakesReservedKeys(true);
  eventMonitor_ = std::make_unique<LocalEventMonitor>(
      NSEvent::mask(keyDown) | NSEvent::mask(leftMouseUp) | NSEvent::mask(rightMouseUp),
      [weak = weak_from_this()](const NSEvent& event) -> std::optional<NSEvent> {
        const auto self = weak.lock();
        return self ? self->handle(event) : event;
      });
  eventMonitor_->start();
  if (didChange) didChange();
  return true;
}

void RecorderCocoa::blur() { controlTextDidEndEditing(); }

void RecorderCocoa::controlTextDidEndEditing() {
  if (!isRecording()) return;
  eventMonitor_.reset();
  platform::NSApp().setTakesReservedKeys(false);
  setIsEnabled(true);
  setIsPaused(false);
  if (didChange) didChange();
}

void RecorderCocoa::stopRecording() {
  if (const auto recorder = recording().lock()) recorder->blur();
}

void RecorderCocoa::performCancelClick() {
  if (!showsCancelButton()) return;
  setStringValue({});
  controlTextDidChange();
}

void RecorderCocoa::controlTextDidChange() {
  if (!stringValue_.empty()) return;
  saveShortcut(std::nullopt);
  focus();
}

void RecorderCocoa::saveShortcut(const std::optional<Shortcut>& shortcut) {
  setShortcut(shortcut, shortcutName_);
  if (onChange_) onChange_(shortcut);
}

bool RecorderCocoa::isOutside(const NSEvent& event) const {
  const auto at = place->inWindow();
  if (!at || at->windowNumber != event.windowNumber) return true;
  const auto& [origin, size] = at->frame;
  const auto& point = event.locationInWindow;
  return point.x < origin.x - margin || point.x > origin.x + size.width + margin ||
         point.y < origin.y - margin || point.y > origin.y + size.height + margin;
}

std::optional<NSEvent> RecorderCocoa::handle(const NSEvent& event) {
  // What follows may end this very monitor and its owner.
  const auto self = shared_from_this();
  const bool isClick = event.type == leftMouseUp || event.type == rightMouseUp;
  if (isClick && isOutside(event)) {
    blur();
    return event;
  }
  if (event.type != keyDown && event.type != keyUp) return std::nullopt;
  return handleKey(event);
}

std::optional<NSEvent> RecorderCocoa::handleKey(const NSEvent& event) {
  const auto held = velkin::modifiers(event);
  const Key key{event.keyCode};
  if (held == 0 && key == Key::tab) {
    blur();
    return event;
  }
  if (held == 0 && key == Key::escape) {
    blur();
    return std::nullopt;
  }
  if (held == 0 && (key == Key::deleteKey || key == Key::deleteForward)) {
    performCancelClick();
    return std::nullopt;
  }
  const auto shortcut = Shortcut::fromEvent(event);
  const bool hasModifiers = (held & ~NSEvent::shiftFlag) != 0;
  if ((!hasModifiers && !isFunctionKey(event)) || !shortcut || event.keyCode == NSEvent::unknownKeyCode) {
    platform::NSSound::beep();
    return std::nullopt;
  }
  if (const auto item = shortcut->takenByMainMenu()) {
    refuse(messages::keyboard_shortcut_used_by_menu_item(item->title()), {});
    return std::nullopt;
  }
  if (shortcut->isTakenBySystem()) {
    refuse(std::string(messages::keyboard_shortcut_used_by_system),
           std::string(messages::keyboard_shortcuts_can_be_changed));
    return std::nullopt;
  }
  setStringValue(shortcut->description());
  saveShortcut(shortcut);
  blur();
  return std::nullopt;
}

void RecorderCocoa::refuse(const std::string& title, const std::string& message) {
  blur();
  platform::NSAlert alert;
  alert.messageText = title;
  alert.informativeText = message;
  alert.beginSheetModal(nullptr, [weak = weak_from_this()](std::size_t) {
    // The desktop gives the window its keyboard back in its own time, and can't while all keys are taken.
    platform::DispatchQueue::main().asyncAfter(timeToGetTheKeyboardBack, [weak] {
      if (const auto self = weak.lock()) self->focus();
    });
  });
}

}  // namespace velkin::KeyboardShortcuts
