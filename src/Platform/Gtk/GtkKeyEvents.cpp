#include "Platform/Gtk/GtkKeyEvents.h"

#include "Platform/CarbonEvents.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkKeyCodes.h"
#include "Platform/Gtk/GtkMouseEvents.h"
#include "Platform/Gtk/X11Desktop.h"
#include "Platform/NSApplication.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

namespace {

/// A key whose code the seam doesn't have: none of its tables holds this one.
constexpr std::uint16_t unknownKey = 0xFF;

/// The hardware codes of the keys that are held down, those of them that are Super, and what waits for all to
/// be released.
std::set<guint> keysDown;
std::set<guint> superKeysDown;
std::vector<std::function<void()>> waitingForKeys;

std::uint32_t modifierFlags(GdkModifierType state) {
  // In a Wayland session the toolkit leaves Super out of the state.
  std::uint32_t flags = X11Desktop::isAvailable() || superKeysDown.empty() ? 0 : NSEvent::controlFlag;
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
/// first layout, so that Command+C copies on a Russian keyboard too.
std::string charactersIgnoringModifiers(GdkEvent* event, std::uint32_t flags) {
  GdkDisplay* display = gdk_event_get_display(event);
  const guint keycode = gdk_key_event_get_keycode(event);
  auto inLayout = characterOf(display, keycode, static_cast<int>(gdk_key_event_get_layout(event)));
  const bool isOtherScript = !inLayout.empty() && (static_cast<unsigned char>(inLayout.front()) & 0x80) != 0;
  if (isOtherScript && (flags & NSEvent::commandFlag) != 0) {
    auto inFirst = characterOf(display, keycode, 0);
    if (!inFirst.empty()) return inFirst;
  }
  return inLayout;
}

void keysMayBeUp() {
  if (!keysDown.empty()) return;
  for (auto& work : std::exchange(waitingForKeys, {})) DispatchQueue::main().async(std::move(work));
}

void noteKey(guint keycode, bool isPress, bool isSuper) {
  if (isPress) {
    keysDown.insert(keycode);
    if (isSuper) superKeysDown.insert(keycode);
  } else {
    keysDown.erase(keycode);
    superKeysDown.erase(keycode);
    keysMayBeUp();
  }
}

/// The releases of keys that are held while a window of ours loses the keyboard go elsewhere.
void forgetKeys() {
  keysDown.clear();
  superKeysDown.clear();
  keysMayBeUp();
}

/// A press that the page had no use for comes a second time, as the same object: after other keys, if the
/// page was busy. The references keep the addresses from being those of other events.
bool wasSeen(GdkEvent* event) {
  static std::array<GdkEvent*, 32> seen{};
  static std::size_t oldest = 0;
  if (std::find(seen.begin(), seen.end(), event) != seen.end()) return true;
  if (seen[oldest] != nullptr) gdk_event_unref(seen[oldest]);
  seen[oldest] = gdk_event_ref(event);
  oldest = (oldest + 1) % seen.size();
  return false;
}

/// The focused widget in the active window of ours.
GtkWidget* focusedWidget() {
  GList* windows = gtk_window_list_toplevels();
  GtkWidget* focus = nullptr;
  for (GList* entry = windows; entry != nullptr; entry = entry->next) {
    auto* window = GTK_WINDOW(entry->data);
    if (gtk_window_is_active(window)) focus = gtk_window_get_focus(window);
  }
  g_list_free(windows);
  return focus;
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

gboolean onEvent(GtkEventControllerLegacy*, GdkEvent* event, gpointer windowPointer) {
  const auto gdkType = gdk_event_get_event_type(event);
  if (gdkType != GDK_KEY_PRESS && gdkType != GDK_KEY_RELEASE) return FALSE;
  if (wasSeen(event)) return FALSE;

  const bool isPress = gdkType == GDK_KEY_PRESS;
  const auto modifier = flagOfKey(gdk_key_event_get_keyval(event));
  noteKey(gdk_key_event_get_keycode(event), isPress, modifier == NSEvent::controlFlag);
  NSEvent key;
  key.modifierFlags = modifierFlags(gdk_event_get_modifier_state(event));
  // The state is that before the event.
  if (modifier != 0)
    key.modifierFlags = isPress ? key.modifierFlags | modifier : key.modifierFlags & ~modifier;
  key.keyCode = virtualKeyCode(gdk_key_event_get_keycode(event)).value_or(unknownKey);
  key.charactersIgnoringModifiers = charactersIgnoringModifiers(event, key.modifierFlags);
  if (modifier != 0) {
    key.type = NSEvent::EventType::flagsChanged;
  } else {
    key.type = isPress ? NSEvent::EventType::keyDown : NSEvent::EventType::keyUp;
  }
  if (isTakenAsRawKey(key)) return TRUE;
  auto& app = NSApp();
  app.currentEvent = key;
  const bool isKept = !app.filterByMonitors(key).has_value();
  app.currentEvent.reset();
  if (isKept) return TRUE;
  GtkWidget* focus = gtk_window_get_focus(GTK_WINDOW(windowPointer));
  return !isPress && focus != nullptr && WEBKIT_IS_WEB_VIEW(focus);
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
                            .keyCode = unknownKey,
                            .modifierFlags = modifierFlags(gdk_device_get_modifier_state(keyboard))});
}

struct EditAction {
  std::string_view selector;
  /// The action of GTK's text widgets.
  const char* widgetAction;
  /// The web engine's command, and whether it can be carried out now.
  const char* engineCommand;
  gboolean (*isAvailable)(WebKitEditorState*);
};

constexpr std::array editActions = {
    EditAction{"cut:", "clipboard.cut", WEBKIT_EDITING_COMMAND_CUT, webkit_editor_state_is_cut_available},
    EditAction{"copy:", "clipboard.copy", WEBKIT_EDITING_COMMAND_COPY, webkit_editor_state_is_copy_available},
    EditAction{"paste:", "clipboard.paste", WEBKIT_EDITING_COMMAND_PASTE,
               webkit_editor_state_is_paste_available},
    EditAction{"selectAll:", "selection.select-all", WEBKIT_EDITING_COMMAND_SELECT_ALL, nullptr},
    EditAction{"undo:", "text.undo", WEBKIT_EDITING_COMMAND_UNDO, webkit_editor_state_is_undo_available},
    EditAction{"redo:", "text.redo", WEBKIT_EDITING_COMMAND_REDO, webkit_editor_state_is_redo_available},
    // Where something can be pasted, something can be deleted: the focus is in a text of the page.
    EditAction{"deleteBackward:", nullptr, "DeleteBackward", webkit_editor_state_is_paste_available},
    EditAction{"deleteForward:", nullptr, "DeleteForward", webkit_editor_state_is_paste_available},
};

bool deleteInText(GtkWidget* focus, bool isForward) {
  const bool isText = GTK_IS_TEXT(focus);
  if (!isText && !GTK_IS_TEXT_VIEW(focus)) return false;
  if (isForward) {
    g_signal_emit_by_name(focus, "delete-from-cursor", GTK_DELETE_CHARS, 1);
  } else {
    g_signal_emit_by_name(focus, "backspace");
  }
  return true;
}

}  // namespace

void watchKeys(GtkWindow* window) {
  GtkEventController* controller = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
  g_signal_connect(controller, "event", G_CALLBACK(onEvent), window);
  gtk_widget_add_controller(GTK_WIDGET(window), controller);
  watchButtons(window);
  g_signal_connect(window, "notify::is-active",
                   G_CALLBACK(+[](GtkWindow* w, GParamSpec*, gpointer) { tellModifiers(w); }), nullptr);
  // A window that is taken off the screen stays an active one for the toolkit.
  g_signal_connect(window, "unmap", G_CALLBACK(+[](GtkWindow*, gpointer) { forgetKeys(); }), nullptr);
}

void whenKeysAreUp(std::function<void()> work) {
  waitingForKeys.push_back(std::move(work));
  keysMayBeUp();
}

bool sendEditAction(const char* selector) {
  GtkWidget* focus = focusedWidget();
  if (focus == nullptr) return false;
  for (const auto& action : editActions) {
    if (action.selector != selector) continue;
    if (WEBKIT_IS_WEB_VIEW(focus)) {
      auto* view = WEBKIT_WEB_VIEW(focus);
      // Copying with nothing selected would empty the clipboard: so only what can be carried out.
      if (action.isAvailable != nullptr && !action.isAvailable(webkit_web_view_get_editor_state(view)))
        return false;
      webkit_web_view_execute_editing_command(view, action.engineCommand);
      return true;
    }
    if (action.widgetAction == nullptr) return deleteInText(focus, action.selector == "deleteForward:");
    return gtk_widget_activate_action(focus, action.widgetAction, nullptr) != FALSE;
  }
  return false;
}

}  // namespace platform
