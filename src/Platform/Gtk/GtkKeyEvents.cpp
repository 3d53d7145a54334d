#include "Platform/Gtk/GtkKeyEvents.h"

#include "Platform/CarbonEvents.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/GtkKeyCodes.h"
#include "Platform/Gtk/GtkMouseEvents.h"
#include "Platform/Gtk/KeyboardPlaces.h"
#include "Platform/Gtk/TextComposition.h"
#include "Platform/Gtk/WindowSystem.h"
#include "Platform/NSApplication.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

namespace {

/// The hardware codes of the keys that are held down, those of them that are Super, and what waits for all to
/// be released.
std::set<guint> keysDown;
std::set<guint> superKeysDown;
/// The virtual codes of those that are no modifiers, and the modifiers of the last event.
std::map<guint, std::uint16_t> ordinaryKeysDown;
std::uint32_t lastFlags = 0;
std::vector<std::function<void()>> waitingForKeys;
bool isRepeat = false;

std::uint32_t modifierFlags(GdkModifierType state) {
  // In a Wayland session the toolkit leaves Super out of the state.
  std::uint32_t flags =
      WindowSystem::present().tellsOfSuper() || superKeysDown.empty() ? 0 : NSEvent::controlFlag;
  if ((state & GDK_LOCK_MASK) != 0) flags |= NSEvent::capsLockFlag;
  if ((state & GDK_SHIFT_MASK) != 0) flags |= NSEvent::shiftFlag;
  if ((state & GDK_SUPER_MASK) != 0) flags |= NSEvent::controlFlag;
  if ((state & GDK_ALT_MASK) != 0) flags |= NSEvent::optionFlag;
  if ((state & GDK_CONTROL_MASK) != 0) flags |= NSEvent::commandFlag;
  return flags;
}

/// The flag of a modifier key; 0 for any other key.
std::uint32_t flagOfKey(guint keyval) {
  switch (keyval) {
    case GDK_KEY_Shift_L:
    case GDK_KEY_Shift_R:
      return NSEvent::shiftFlag;
    case GDK_KEY_Control_L:
    case GDK_KEY_Control_R:
      return NSEvent::commandFlag;
    case GDK_KEY_Alt_L:
    case GDK_KEY_Alt_R:
    case GDK_KEY_Meta_L:
    case GDK_KEY_Meta_R:
      return NSEvent::optionFlag;
    case GDK_KEY_Super_L:
    case GDK_KEY_Super_R:
    case GDK_KEY_Hyper_L:
    case GDK_KEY_Hyper_R:
      return NSEvent::controlFlag;
    default:
      return 0;
  }
}

std::string characterOf(GdkDisplay* display, guint keycode, int group) {
  guint keyval = 0;
  if (!gdk_display_translate_key(display, keycode, GdkModifierType(0), group, &keyval, nullptr, nullptr,
                                 nullptr)) {
    return {};
  }
  const guint32 character = gdk_keyval_to_unicode(keyval);
  if (character == 0) return {};
  std::array<char, 6> bytes{};
  const int length = g_unichar_to_utf8(character, bytes.data());
  return {bytes.data(), static_cast<std::size_t>(length)};
}

/// What the key gives without modifiers. With Command, a layout of another script lends the letter of the
/// first Latin layout, so that Command+C copies on a Russian keyboard too.
std::string charactersIgnoringModifiers(GdkEvent* event, std::uint32_t flags) {
  GdkDisplay* display = gdk_event_get_display(event);
  const guint keycode = gdk_key_event_get_keycode(event);
  const auto layout = static_cast<int>(gdk_key_event_get_layout(event));
  auto inLayout = characterOf(display, keycode, layout);
  const bool isOtherScript = !inLayout.empty() && (static_cast<unsigned char>(inLayout.front()) & 0x80) != 0;
  if (isOtherScript && (flags & NSEvent::commandFlag) != 0) {
    auto inLatin = characterOf(display, keycode, latinLayout(display, layout));
    if (!inLatin.empty()) return inLatin;
  }
  return inLayout;
}

void keysMayBeUp() {
  if (!keysDown.empty()) return;
  for (auto& work : std::exchange(waitingForKeys, {})) DispatchQueue::main().async(std::move(work));
}

void noteKey(guint keycode, bool isPress, bool isSuper) {
  isRepeat = isPress && keysDown.count(keycode) != 0;
  if (isPress) {
    keysDown.insert(keycode);
    if (isSuper) superKeysDown.insert(keycode);
  } else {
    keysDown.erase(keycode);
    superKeysDown.erase(keycode);
    ordinaryKeysDown.erase(keycode);
    keysMayBeUp();
  }
}

/// The releases of keys that are held while a window of ours loses the keyboard go elsewhere. For the
/// monitors such a key is up: one that opened a dialogue would else seem held when the next key comes.
void forgetKeys() {
  keysDown.clear();
  superKeysDown.clear();
  for (const auto& [_, code] : std::exchange(ordinaryKeysDown, {})) {
    NSApp().filterByMonitors(
        {.type = NSEvent::EventType::keyUp, .keyCode = code, .modifierFlags = lastFlags});
  }
  keysMayBeUp();
}

/// A press that the page had no use for comes a second time, as the same object: after other keys, if the
/// page was busy. The references keep the addresses from being those of other events.
class SeenKeys {
 public:
  bool contain(GdkEvent* event) const { return std::find(seen_.begin(), seen_.end(), event) != seen_.end(); }
  void add(GdkEvent* event) {
    if (seen_[oldest_] != nullptr) gdk_event_unref(seen_[oldest_]);
    seen_[oldest_] = gdk_event_ref(event);
    oldest_ = (oldest_ + 1) % seen_.size();
  }

 private:
  std::array<GdkEvent*, 32> seen_{};
  std::size_t oldest_ = 0;
};

SeenKeys seenKeys;

/// Keys that wait for edit actions to be carried out, in order.
std::vector<GdkEvent*> heldKeys;

void handBackHeldKeys() {
  for (auto* event : std::exchange(heldKeys, {})) {
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    gdk_display_put_event(gdk_event_get_display(event), event);
    G_GNUC_END_IGNORE_DEPRECATIONS
    gdk_event_unref(event);
  }
}

/// An edit action acts on what the one before it has done, and the keys behind it on what it does.
bool mustWait(GdkEvent* event) {
  if (!heldKeys.empty()) return true;
  const auto order = editOrder();
  if (order == EditOrder::free) return false;
  if (order == EditOrder::everyKeyWaits) return true;
  if (gdk_event_get_event_type(event) != GDK_KEY_PRESS) return false;
  const auto keyval = gdk_key_event_get_keyval(event);
  if (keyval == GDK_KEY_BackSpace || keyval == GDK_KEY_Delete || keyval == GDK_KEY_KP_Delete) return true;
  const auto flags = modifierFlags(gdk_event_get_modifier_state(event));
  if ((flags & NSEvent::commandFlag) == 0) return false;
  const auto character = charactersIgnoringModifiers(event, flags);
  constexpr std::string_view editCharacters = "xcvaz";
  return character.size() == 1 && editCharacters.find(character.front()) != std::string_view::npos;
}

bool isHeld(GdkEvent* event) {
  if (!mustWait(event)) return false;
  heldKeys.push_back(gdk_event_ref(event));
  if (heldKeys.size() == 1) whenEditActionsAreDone(handBackHeldKeys);
  return true;
}

std::uint32_t carbonModifiers(std::uint32_t flags) {
  std::uint32_t bits = 0;
  if ((flags & NSEvent::commandFlag) != 0) bits |= carbon::cmdKey;
  if ((flags & NSEvent::shiftFlag) != 0) bits |= carbon::shiftKey;
  if ((flags & NSEvent::optionFlag) != 0) bits |= carbon::optionKey;
  if ((flags & NSEvent::controlFlag) != 0) bits |= carbon::controlKey;
  return bits;
}

/// Global shortcuts come as raw key events while a menu of the program is open.
bool isTakenAsRawKey(const NSEvent& key) {
  if (key.type == NSEvent::EventType::flagsChanged) return false;
  const bool isDown = key.type == NSEvent::EventType::keyDown;
  auto& target = GetEventDispatcherTarget();
  const CarbonEvent raw{.kind = isDown ? kEventRawKeyDown : kEventRawKeyUp,
                        .keyCode = key.keyCode,
                        .keyModifiers = carbonModifiers(key.modifierFlags)};
  return target.isWanted({raw.eventClass, raw.kind}) && target.sendEvent(raw) == noErr;
}

bool isTab(guint keyval) {
  return keyval == GDK_KEY_Tab || keyval == GDK_KEY_ISO_Left_Tab || keyval == GDK_KEY_KP_Tab;
}

bool movesFocus(guint keyval) {
  if (isTab(keyval)) return true;
  switch (keyval) {
    case GDK_KEY_Up:
    case GDK_KEY_Down:
    case GDK_KEY_Left:
    case GDK_KEY_Right:
      return true;
    default:
      return false;
  }
}

/// F6 and Shift+F6 go round the panes.
bool goesToNextPane(GtkWindow* window, GdkEvent* event) {
  if (gdk_key_event_get_keyval(event) != GDK_KEY_F6) return false;
  const auto flags = modifierFlags(gdk_event_get_modifier_state(event)) & ~NSEvent::capsLockFlag;
  if (flags != 0 && flags != NSEvent::shiftFlag) return false;
  return focusNextPane(window, flags == 0);
}

gboolean onKeyEvent(GtkEventControllerLegacy*, GdkEvent* event, gpointer windowPointer) {
  const auto gdkType = gdk_event_get_event_type(event);
  if (gdkType != GDK_KEY_PRESS && gdkType != GDK_KEY_RELEASE) return FALSE;
  if (seenKeys.contain(event)) {
    // A Tab that has led out of the page comes back all the same, and would lead on from where it led to.
    GtkWidget* now = gtk_window_get_focus(GTK_WINDOW(windowPointer));
    return isTab(gdk_key_event_get_keyval(event)) && (now == nullptr || !WEBKIT_IS_WEB_VIEW(now)) ? TRUE
                                                                                                  : FALSE;
  }
  if (isHeld(event)) return TRUE;
  seenKeys.add(event);

  const bool isPress = gdkType == GDK_KEY_PRESS;
  const auto modifier = flagOfKey(gdk_key_event_get_keyval(event));
  noteKey(gdk_key_event_get_keycode(event), isPress, modifier == NSEvent::controlFlag);
  NSEvent key;
  key.modifierFlags = modifierFlags(gdk_event_get_modifier_state(event));
  // The state is that before the event.
  if (modifier != 0)
    key.modifierFlags = isPress ? key.modifierFlags | modifier : key.modifierFlags & ~modifier;
  GdkDisplay* display = gdk_event_get_display(event);
  const auto layout = latinLayout(display, static_cast<int>(gdk_key_event_get_layout(event)));
  key.keyCode = keyCodeOf(gdk_key_event_get_keycode(event), charactersOf(display, layout))
                    .value_or(NSEvent::unknownKeyCode);
  key.charactersIgnoringModifiers = charactersIgnoringModifiers(event, key.modifierFlags);
  lastFlags = key.modifierFlags;
  if (isPress && modifier == 0) ordinaryKeysDown[gdk_key_event_get_keycode(event)] = key.keyCode;
  if (modifier != 0) {
    key.type = NSEvent::EventType::flagsChanged;
  } else {
    key.type = isPress ? NSEvent::EventType::keyDown : NSEvent::EventType::keyUp;
  }
  if (isTakenAsRawKey(key)) return TRUE;
  auto* window = GTK_WINDOW(windowPointer);
  GtkWidget* focus = gtk_window_get_focus(window);
  if (isPress && belongsToComposition(focus, event)) return FALSE;
  auto& app = NSApp();
  app.currentEvent = key;
  const KeyEventScope scope(window);
  const bool isKept = !app.filterByMonitors(key).has_value();
  app.currentEvent.reset();
  if (isKept) return TRUE;
  if (isPress && goesToNextPane(window, event)) return TRUE;
  // The toolkit shows the ring at the key's release, which the monitors keep.
  if (isPress && isTab(gdk_key_event_get_keyval(event)))
    noteTab((key.modifierFlags & NSEvent::shiftFlag) != 0);
  if (isPress && movesFocus(gdk_key_event_get_keyval(event))) gtk_window_set_focus_visible(window, TRUE);
  focus = gtk_window_get_focus(window);
  if (focus == nullptr || !WEBKIT_IS_WEB_VIEW(focus)) return FALSE;
  if (isPress && modifier == 0) noteKeyToPage(focus);
  return !isPress;
}

/// Tells the modifiers as they are: what happened to them while another program had the keyboard, nobody saw.
void tellModifiers(GtkWindow* window) {
  if (!gtk_window_is_active(window)) {
    forgetKeys();
    return;
  }
  auto* seat = gdk_display_get_default_seat(gtk_widget_get_display(GTK_WIDGET(window)));
  auto* keyboard = seat != nullptr ? gdk_seat_get_keyboard(seat) : nullptr;
  if (keyboard == nullptr) return;
  NSApp().filterByMonitors({.type = NSEvent::EventType::flagsChanged,
                            .keyCode = NSEvent::unknownKeyCode,
                            .modifierFlags = modifierFlags(gdk_device_get_modifier_state(keyboard))});
}

}  // namespace

void watchKeys(GtkWindow* window) {
  GtkEventController* controller = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
  g_signal_connect(controller, "event", G_CALLBACK(onKeyEvent), window);
  gtk_widget_add_controller(GTK_WIDGET(window), controller);
  watchButtons(window);
  g_signal_connect(window, "notify::is-active",
                   G_CALLBACK(+[](GtkWindow* w, GParamSpec*, gpointer) { tellModifiers(w); }), nullptr);
  // A window that is taken off the screen stays an active one for the toolkit.
  g_signal_connect(window, "unmap", G_CALLBACK(+[](GtkWindow*, gpointer) { forgetKeys(); }), nullptr);
}

bool isKeyRepeating() { return isRepeat; }

void whenKeysAreUp(std::function<void()> work) {
  waitingForKeys.push_back(std::move(work));
  keysMayBeUp();
}

}  // namespace platform
