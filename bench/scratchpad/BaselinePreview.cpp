// The least that a preview can be: a bare window with one web view, which loads the other one of two pages at
// a key press; on request beside the toolkit's own text view, which paints the letter.
#include <cstdlib>

#include <gtk/gtk.h>
#include <webkit/webkit.h>

namespace {

struct Pages {
  WebKitWebView* view;
  char* usual;
  char* changed;
  gboolean isAlone;
};

gboolean loadPage(GtkEventControllerKey*, guint key, guint, GdkModifierType, gpointer data) {
  const auto& pages = *static_cast<Pages*>(data);
  if (key == GDK_KEY_m) webkit_web_view_load_html(pages.view, pages.changed, nullptr);
  if (key == GDK_KEY_BackSpace) webkit_web_view_load_html(pages.view, pages.usual, nullptr);
  return pages.isAlone;
}

/// A text view of half the width, with the keyboard and the cursor before the text.
GtkWidget* makeEditor(const char* text, int width) {
  GtkWidget* view = gtk_text_view_new();
  gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD_CHAR);
  GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
  gtk_text_buffer_set_text(buffer, text, -1);
  GtkTextIter start;
  gtk_text_buffer_get_start_iter(buffer, &start);
  gtk_text_buffer_place_cursor(buffer, &start);
  GtkWidget* scrolled = gtk_scrolled_window_new();
  gtk_widget_set_size_request(scrolled, width, -1);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), view);
  return scrolled;
}

}  // namespace

// WIDTH HEIGHT FILE FILE-AFTER-THE-KEY [TEXT]
int main(int argc, char** argv) {
  if (argc < 5 || argc > 6) return 2;
  gtk_init();
  Pages pages{WEBKIT_WEB_VIEW(webkit_web_view_new()), nullptr, nullptr, argc == 5};
  if (!g_file_get_contents(argv[3], &pages.usual, nullptr, nullptr) ||
      !g_file_get_contents(argv[4], &pages.changed, nullptr, nullptr))
    return 1;
  // As the program does where pictures are computed by the processor.
  webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(pages.view),
                                                   WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  GtkWidget* window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), std::atoi(argv[1]), std::atoi(argv[2]));
  if (pages.isAlone) {
    gtk_window_set_child(GTK_WINDOW(window), GTK_WIDGET(pages.view));
  } else {
    char* text = nullptr;
    if (!g_file_get_contents(argv[5], &text, nullptr, nullptr)) return 1;
    GtkWidget* both = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_box_append(GTK_BOX(both), makeEditor(text, std::atoi(argv[1]) / 2));
    gtk_widget_set_hexpand(GTK_WIDGET(pages.view), TRUE);
    gtk_box_append(GTK_BOX(both), GTK_WIDGET(pages.view));
    gtk_window_set_child(GTK_WINDOW(window), both);
  }
  GtkEventController* keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  g_signal_connect(keys, "key-pressed", G_CALLBACK(loadPage), &pages);
  gtk_widget_add_controller(window, keys);
  webkit_web_view_load_html(pages.view, pages.usual, nullptr);
  gtk_window_present(GTK_WINDOW(window));
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
