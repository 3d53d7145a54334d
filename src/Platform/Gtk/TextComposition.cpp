#include "Platform/Gtk/TextComposition.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <memory>
#include <optional>

#include <webkit/webkit.h>

namespace platform {

namespace {

struct Composition {
  /// Text that the input method shows in the widget.
  bool hasPreedit = false;
  /// Dead keys and what followed them. The toolkit's own method shows nothing of them.
  int keys = 0;
  /// When a letter went to the widget of which nothing has come yet. A method in another process takes its
  /// time, and what follows meanwhile follows a composition perhaps. Milliseconds, as events tell them.
  std::optional<guint32> unanswered;

  void setPreedit(const char* preedit) {
    unanswered.reset();
    hasPreedit = preedit != nullptr && *preedit != '\0';
  }
  /// Of a dead key alone nothing comes: what is committed then came before it, from a method in another
  /// process.
  void committed() {
    unanswered.reset();
    if (keys != 1) forget();
  }
  void forget() {
    hasPreedit = false;
    keys = 0;
    unanswered.reset();
  }
};

/// A method that answers later than this doesn't answer at all.
constexpr guint32 answerLimit = 2000;

constexpr const char* compositionKey = "velkin-composition";

Composition* compositionAt(GtkWidget* focus) {
  if (focus == nullptr) return nullptr;
  return static_cast<Composition*>(g_object_get_data(G_OBJECT(focus), compositionKey));
}

void followText(GtkWidget* text, Composition* composition) {
  g_signal_connect(text, "preedit-changed", G_CALLBACK(+[](GtkWidget*, const char* preedit, gpointer self) {
                     static_cast<Composition*>(self)->setPreedit(preedit);
                   }),
                   composition);
  auto* source =
      GTK_IS_TEXT_VIEW(text) ? G_OBJECT(gtk_text_view_get_buffer(GTK_TEXT_VIEW(text))) : G_OBJECT(text);
  g_signal_connect_object(source, "changed", G_CALLBACK(+[](GObject*, gpointer widget) {
                            if (auto* changed = compositionAt(GTK_WIDGET(widget))) changed->committed();
                          }),
                          text, GConnectFlags(0));
}

void followPage(WebKitWebView* view) {
  auto* context = webkit_web_view_get_input_method_context(view);
  if (context == nullptr) return;
  g_signal_connect_object(context, "preedit-changed",
                          G_CALLBACK(+[](WebKitInputMethodContext* method, gpointer page) {
                            char* preedit = nullptr;
                            webkit_input_method_context_get_preedit(method, &preedit, nullptr, nullptr);
                            const GStringPtr owned(preedit);
                            if (auto* composition = compositionAt(GTK_WIDGET(page)))
                              composition->setPreedit(preedit);
                          }),
                          view, GConnectFlags(0));
  g_signal_connect_object(context, "committed",
                          G_CALLBACK(+[](WebKitInputMethodContext*, const char*, gpointer page) {
                            if (auto* composition = compositionAt(GTK_WIDGET(page))) composition->committed();
                          }),
                          view, GConnectFlags(0));
}

Composition* compositionOf(GtkWidget* focus) {
  if (auto* composition = compositionAt(focus)) return composition;
  const bool isPage = focus != nullptr && WEBKIT_IS_WEB_VIEW(focus);
  if (!isPage && !GTK_IS_TEXT(focus) && !GTK_IS_TEXT_VIEW(focus)) return nullptr;
  auto* fresh = std::make_unique<Composition>().release();
  g_object_set_data_full(G_OBJECT(focus), compositionKey, fresh, [](gpointer composition) {
    std::default_delete<Composition>()(static_cast<Composition*>(composition));
  });
  if (isPage) {
    followPage(WEBKIT_WEB_VIEW(focus));
  } else {
    followText(focus, fresh);
  }
  // What was begun isn't taken up again.
  GtkEventController* leaving = gtk_event_controller_focus_new();
  g_signal_connect_swapped(leaving, "leave", G_CALLBACK(+[](Composition* left) { left->forget(); }), fresh);
  gtk_widget_add_controller(focus, leaving);
  return fresh;
}

bool isDeadKey(guint keyval) {
  return keyval == GDK_KEY_Multi_key ||
         (keyval >= GDK_KEY_dead_grave && keyval <= GDK_KEY_dead_longsolidusoverlay);
}

bool isModifier(guint keyval) {
  return (keyval >= GDK_KEY_Shift_L && keyval <= GDK_KEY_Hyper_R) ||
         (keyval >= GDK_KEY_ISO_Lock && keyval <= GDK_KEY_ISO_Last_Group_Lock) ||
         keyval == GDK_KEY_Mode_switch;
}

/// The keys that change, end or give up a composition.
bool isKeyOfCompositions(guint keyval) {
  return keyval == GDK_KEY_BackSpace || keyval == GDK_KEY_Delete || keyval == GDK_KEY_KP_Delete ||
         keyval == GDK_KEY_Escape || keyval == GDK_KEY_Return || keyval == GDK_KEY_KP_Enter;
}

/// A page has keys without text, and answers to them in its own ways.
bool isAwaitedFrom(GtkWidget* focus, GdkEvent* key) {
  constexpr unsigned commands = GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK | GDK_META_MASK;
  constexpr guint32 firstPrinted = 0x20;
  const guint keyval = gdk_key_event_get_keyval(key);
  return !WEBKIT_IS_WEB_VIEW(focus) && !isKeyOfCompositions(keyval) &&
         gdk_keyval_to_unicode(keyval) >= firstPrinted && (gdk_event_get_modifier_state(key) & commands) == 0;
}

/// Counts dead keys and what follows them.
void count(Composition& composition, guint keyval) {
  if (isModifier(keyval)) return;
  if (composition.keys == 0 && !isDeadKey(keyval)) return;
  if (keyval == GDK_KEY_BackSpace) {
    --composition.keys;
  } else if (isKeyOfCompositions(keyval)) {
    composition.keys = 0;
  } else {
    ++composition.keys;
  }
}

}  // namespace

bool belongsToComposition(GtkWidget* focus, GdkEvent* key) {
  auto* composition = compositionOf(focus);
  if (composition == nullptr) return false;
  const guint keyval = gdk_key_event_get_keyval(key);
  const guint32 now = gdk_event_get_time(key);
  const bool mayBeComposing = composition->unanswered && now - *composition->unanswered < answerLimit;
  const bool isItsKey = isKeyOfCompositions(keyval) && (isComposing(focus) || mayBeComposing);
  count(*composition, keyval);
  if (isAwaitedFrom(focus, key)) composition->unanswered = now;
  return isItsKey;
}

bool isComposing(GtkWidget* focus) {
  const auto* composition = compositionAt(focus);
  return composition != nullptr && (composition->hasPreedit || composition->keys > 0);
}

}  // namespace platform
