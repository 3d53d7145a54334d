#include "Platform/Gtk/X11HotKeyGrabs.h"

#include "Platform/DebugLog.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GtkKeyCodes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <utility>

#include <glib-unix.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace platform {

namespace {

constexpr std::uint8_t sentFlag = 0x80;

void logGrab(const std::string& message) { debugLog("X11HotKeyGrabs", "grab(_:)", message); }

}  // namespace

void X11HotKeyGrabs::FreeDeleter::operator()(void* memory) const noexcept { std::free(memory); }

X11HotKeyGrabs::X11HotKeyGrabs(OnKey onKey) : onKey_(std::move(onKey)) {}

X11HotKeyGrabs::~X11HotKeyGrabs() {
  isAlive_.end();
  disconnect();
}

bool X11HotKeyGrabs::connect() {
  if (connection_ != nullptr) return true;
  if (hasFailed_) return false;
  int screenNumber = 0;
  connection_ = xcb_connect(nullptr, &screenNumber);
  if (xcb_connection_has_error(connection_) != 0) {
    logGrab("The display can't be opened: there are no global shortcuts");
    disconnect();
    return false;
  }
  const auto* setup = xcb_get_setup(connection_);
  auto screens = xcb_setup_roots_iterator(setup);
  while (screenNumber-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
  root_ = screens.data->root;
  readKeyboard();
  source_ = g_unix_fd_add(
      xcb_get_file_descriptor(connection_), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR),
      [](gint, GIOCondition, gpointer self) -> gboolean {
        static_cast<X11HotKeyGrabs*>(self)->drain();
        return G_SOURCE_CONTINUE;
      },
      this);
  return true;
}

void X11HotKeyGrabs::disconnect() {
  if (source_ != 0) g_source_remove(std::exchange(source_, 0));
  if (connection_ != nullptr) xcb_disconnect(std::exchange(connection_, nullptr));
  // A display that is gone doesn't come back for this process.
  hasFailed_ = true;
}

void X11HotKeyGrabs::readKeyboard() {
  const auto* setup = xcb_get_setup(connection_);
  firstKeycode_ = setup->min_keycode;
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto mappingCookie = xcb_get_keyboard_mapping(connection_, firstKeycode_, count);
  const auto modifierCookie = xcb_get_modifier_mapping(connection_);
  const Reply<xcb_get_keyboard_mapping_reply_t> mapping(
      xcb_get_keyboard_mapping_reply(connection_, mappingCookie, nullptr));
  const Reply<xcb_get_modifier_mapping_reply_t> modifier(
      xcb_get_modifier_mapping_reply(connection_, modifierCookie, nullptr));
  modifiers_ = {};
  symbols_.clear();
  if (!mapping || !modifier) return;
  const std::size_t perKey = mapping->keysyms_per_keycode;
  const std::span all(xcb_get_keyboard_mapping_keysyms(mapping.get()), perKey * count);
  for (std::size_t i = 0; i < all.size() && perKey > 0; i += perKey) symbols_.push_back(all[i]);

  const std::size_t perModifier = modifier->keycodes_per_modifier;
  const std::span keycodes(xcb_get_modifier_mapping_keycodes(modifier.get()), perModifier * 8);
  /// The first of the five free modifiers that has a key with one of these symbols.
  const auto modifierWith = [&](std::initializer_list<xcb_keysym_t> wanted) -> std::uint16_t {
    constexpr std::size_t firstFree = 3;
    for (std::size_t i = firstFree * perModifier; i < keycodes.size(); ++i) {
      if (keycodes[i] < firstKeycode_) continue;
      const auto symbols = all.subspan((keycodes[i] - firstKeycode_) * perKey, perKey);
      const bool isIt = std::any_of(symbols.begin(), symbols.end(), [&](auto symbol) {
        return std::find(wanted.begin(), wanted.end(), symbol) != wanted.end();
      });
      if (isIt) return static_cast<std::uint16_t>(1U << (i / perModifier));
    }
    return 0;
  };
  modifiers_.numLock = modifierWith({XKB_KEY_Num_Lock});
  if (const auto alt = modifierWith({XKB_KEY_Alt_L, XKB_KEY_Alt_R})) modifiers_.alt = alt;
  if (const auto super = modifierWith({XKB_KEY_Super_L, XKB_KEY_Super_R})) modifiers_.super = super;
}

std::vector<std::uint16_t> X11HotKeyGrabs::lockCombinations() const {
  std::vector<std::uint16_t> combinations = {0, XCB_MOD_MASK_LOCK};
  if (modifiers_.numLock != 0) {
    combinations.push_back(modifiers_.numLock);
    combinations.push_back(XCB_MOD_MASK_LOCK | modifiers_.numLock);
  }
  return combinations;
}

std::optional<X11HotKeyGrabs::ServerKey> X11HotKeyGrabs::serverKey(HotKeyCombination combination) const {
  const auto keycode = placeOf(combination.keyCode, [this](unsigned code) -> char32_t {
    if (code < firstKeycode_ || code >= firstKeycode_ + symbols_.size()) return 0;
    return xkb_keysym_to_utf32(symbols_[code - firstKeycode_]);
  });
  if (!keycode || *keycode < firstKeycode_ || *keycode >= firstKeycode_ + symbols_.size())
    return std::nullopt;
  ServerKey key{static_cast<xcb_keycode_t>(*keycode), 0};
  if ((combination.modifiers & carbon::cmdKey) != 0) key.modifiers |= XCB_MOD_MASK_CONTROL;
  if ((combination.modifiers & carbon::shiftKey) != 0) key.modifiers |= XCB_MOD_MASK_SHIFT;
  if ((combination.modifiers & carbon::optionKey) != 0) key.modifiers |= modifiers_.alt;
  if ((combination.modifiers & carbon::controlKey) != 0) key.modifiers |= modifiers_.super;
  return key;
}

std::string X11HotKeyGrabs::spoken(HotKeyCombination combination) const {
  std::string text;
  if ((combination.modifiers & carbon::cmdKey) != 0) text += "Ctrl+";
  if ((combination.modifiers & carbon::controlKey) != 0) text += "Super+";
  if ((combination.modifiers & carbon::optionKey) != 0) text += "Alt+";
  if ((combination.modifiers & carbon::shiftKey) != 0) text += "Shift+";
  const auto key = serverKey(combination);
  if (!key) return text + "key " + std::to_string(combination.keyCode);
  std::array<char, 64> name = {};
  xkb_keysym_get_name(xkb_keysym_to_upper(symbols_[key->keycode - firstKeycode_]), name.data(), name.size());
  return text + name.data();
}

bool X11HotKeyGrabs::grabOnServer(ServerKey key) {
  std::vector<xcb_void_cookie_t> cookies;
  for (const auto locks : lockCombinations()) {
    cookies.push_back(xcb_grab_key_checked(connection_, 1, root_,
                                           static_cast<std::uint16_t>(key.modifiers | locks), key.keycode,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool isRefused = false;
  for (const auto cookie : cookies) {
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection_, cookie));
    if (error) isRefused = true;
  }
  // The combinations with some of the locks may have been free.
  if (isRefused) ungrabOnServer(key);
  drainLater();
  return !isRefused;
}

void X11HotKeyGrabs::ungrabOnServer(ServerKey key) {
  for (const auto locks : lockCombinations()) {
    xcb_ungrab_key(connection_, key.keycode, root_, static_cast<std::uint16_t>(key.modifiers | locks));
  }
  xcb_flush(connection_);
}

OSStatus X11HotKeyGrabs::grab(HotKeyCombination combination) {
  if (!connect()) return eventHotKeyInvalidErr;
  const auto key = serverKey(combination);
  if (!key) {
    logGrab(spoken(combination) + " is on no keyboard here: it can't be a global shortcut");
    return eventHotKeyInvalidErr;
  }
  if (!grabOnServer(*key)) {
    logGrab(spoken(combination) + " is taken by another program: it will not reach Velkin");
    return eventHotKeyExistsErr;
  }
  grabs_[combination] = true;
  return noErr;
}

void X11HotKeyGrabs::ungrab(HotKeyCombination combination) {
  const auto found = grabs_.find(combination);
  if (found == grabs_.end()) return;
  const auto key = serverKey(combination);
  if (connection_ != nullptr && found->second && key) ungrabOnServer(*key);
  grabs_.erase(found);
  std::erase_if(down_, [&](const auto& entry) { return entry.second == combination; });
}

bool X11HotKeyGrabs::isHeldByAnother(HotKeyCombination combination) {
  const auto known = grabs_.find(combination);
  if (known != grabs_.end()) return !known->second;
  if (!connect()) return false;
  const auto key = serverKey(combination);
  if (!key) return false;
  if (!grabOnServer(*key)) return true;
  ungrabOnServer(*key);
  return false;
}

X11HotKeyGrabs::Event X11HotKeyGrabs::takeEvent() {
  if (waiting_.empty()) return Event(xcb_poll_for_event(connection_));
  auto event = std::move(waiting_.front());
  waiting_.pop_front();
  return event;
}

bool X11HotKeyGrabs::isRepetition(const xcb_key_release_event_t& release) {
  // A key that repeats comes as release and press of one moment. The server makes both in one go, so after
  // its answer to anything the second one is here.
  if (waiting_.empty()) {
    const Reply<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    while (auto event = Event(xcb_poll_for_event(connection_))) waiting_.push_back(std::move(event));
  }
  if (waiting_.empty() || (waiting_.front()->response_type & ~sentFlag) != XCB_KEY_PRESS) return false;
  const auto& press = *reinterpret_cast<const xcb_key_press_event_t*>(waiting_.front().get());
  return press.detail == release.detail && press.time == release.time;
}

void X11HotKeyGrabs::drainLater() {
  // The answers that were waited for may have brought events, of which the connection's file says nothing.
  DispatchQueue::main().async([this, alive = isAlive_.watch()] {
    if (alive && connection_ != nullptr) drain();
  });
}

void X11HotKeyGrabs::drain() {
  const auto alive = isAlive_.watch();
  bool isKeyboardChanged = false;
  while (auto event = takeEvent()) {
    const auto type = event->response_type & ~sentFlag;
    if (type == XCB_KEY_PRESS) {
      keyPressed(*reinterpret_cast<const xcb_key_press_event_t*>(event.get()));
    } else if (type == XCB_KEY_RELEASE) {
      keyReleased(*reinterpret_cast<const xcb_key_release_event_t*>(event.get()));
    } else if (type == XCB_MAPPING_NOTIFY) {
      isKeyboardChanged = true;
    }
    // What a key does may have ended all this.
    if (!alive || connection_ == nullptr) return;
  }
  if (xcb_connection_has_error(connection_) != 0) {
    logGrab("The display is gone");
    disconnect();
    return;
  }
  // Once for the several changes that one change of the layout is made of.
  if (isKeyboardChanged) keyboardChanged();
}

void X11HotKeyGrabs::keyPressed(const xcb_key_press_event_t& press) {
  const auto relevant = static_cast<std::uint16_t>(XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL |
                                                   modifiers_.alt | modifiers_.super);
  for (const auto& [combination, isHeld] : grabs_) {
    const auto key = serverKey(combination);
    if (!isHeld || !key || key->keycode != press.detail || key->modifiers != (press.state & relevant))
      continue;
    const auto pressed = combination;
    // Repetitions don't come here: a key that counts as down has lost its release, and is pressed anew.
    down_.insert_or_assign(press.detail, pressed);
    onKey_(pressed, true, {press.time, {}});
    return;
  }
}

void X11HotKeyGrabs::keyReleased(const xcb_key_release_event_t& release) {
  if (isRepetition(release)) {
    waiting_.pop_front();
    return;
  }
  const auto found = down_.find(release.detail);
  if (found == down_.end()) return;
  const auto combination = found->second;
  down_.erase(found);
  onKey_(combination, false, {release.time, {}});
}

void X11HotKeyGrabs::keyboardChanged() {
  const auto before = modifiers_;
  const auto heldKeys = [this] {
    std::vector<ServerKey> held;
    for (const auto& [combination, isHeld] : grabs_) {
      if (const auto key = serverKey(combination); isHeld && key) held.push_back(*key);
    }
    return held;
  };
  const auto held = heldKeys();
  const auto locksBefore = lockCombinations();
  readKeyboard();
  // Another layout may have the same letters elsewhere.
  if (modifiers_ == before && heldKeys() == held) return;
  for (const auto& key : held) {
    for (const auto locks : locksBefore) {
      xcb_ungrab_key(connection_, key.keycode, root_, static_cast<std::uint16_t>(key.modifiers | locks));
    }
  }
  for (auto& [combination, isHeld] : grabs_) {
    const auto key = serverKey(combination);
    isHeld = key && grabOnServer(*key);
    if (!isHeld)
      logGrab(spoken(combination) + " was lost with a change of the keyboard: another program has it");
  }
}

}  // namespace platform
