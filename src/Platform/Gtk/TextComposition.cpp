#include "Platform/Gtk/TextComposition.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <webkit/webkit.h>

namespace platform {

namespace {

constexpr const char* followedKey = "velkin-composition-followed";
constexpr const char* composingKey = "velkin-composing";

void setComposing(GObject* focus, const char* preedit) {
  const bool isComposing = preedit != nullptr && *preedit != '\0';
  g_object_set_data(focus, composingKey, GINT_TO_POINTER(isComposing ? 1 : 0));
}

}  // namespace

void followComposition(GtkWidget* focus) {
  if (focus == nullptr || g_object_get_data(G_OBJECT(focus), followedKey) != nullptr) return;
  if (GTK_IS_TEXT(focus) || GTK_IS_TEXT_VIEW(focus)) {
    g_signal_connect(focus, "preedit-changed",
                     G_CALLBACK(+[](GtkWidget* widget, const char* preedit, gpointer) {
                       setComposing(G_OBJECT(widget), preedit);
                     }),
                     nullptr);
  } else if (WEBKIT_IS_WEB_VIEW(focus)) {
    auto* context = webkit_web_view_get_input_method_context(WEBKIT_WEB_VIEW(focus));
    if (context == nullptr) return;
    g_signal_connect_object(context, "preedit-changed",
                            G_CALLBACK(+[](WebKitInputMethodContext* method, gpointer view) {
                              char* preedit = nullptr;
                              webkit_input_method_context_get_preedit(method, &preedit, nullptr, nullptr);
                              const GStringPtr owned(preedit);
                              setComposing(G_OBJECT(view), preedit);
                            }),
                            focus, GConnectFlags(0));
    g_signal_connect_object(
        context, "preedit-finished",
        G_CALLBACK(+[](WebKitInputMethodContext*, gpointer view) { setComposing(G_OBJECT(view), nullptr); }),
        focus, GConnectFlags(0));
  } else {
    return;
  }
  g_object_set_data(G_OBJECT(focus), followedKey, GINT_TO_POINTER(1));
}

bool isComposing(GtkWidget* focus) {
  return focus != nullptr && g_object_get_data(G_OBJECT(focus), composingKey) != nullptr;
}

bool isKeyOfCompositions(guint keyval) {
  return keyval == GDK_KEY_BackSpace || keyval == GDK_KEY_Delete || keyval == GDK_KEY_KP_Delete ||
         keyval == GDK_KEY_Escape || keyval == GDK_KEY_Return || keyval == GDK_KEY_KP_Enter;
}

}  // namespace platform
