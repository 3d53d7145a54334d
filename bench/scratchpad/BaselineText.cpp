// The least that an editor can be: a bare window with the toolkit's own text view, and a text in it.
#include <cstdlib>

#include <gtk/gtk.h>

// WIDTH HEIGHT FILE
int main(int argc, char** argv) {
  if (argc != 4) return 2;
  gtk_init();
  char* text = nullptr;
  gsize length = 0;
  if (!g_file_get_contents(argv[3], &text, &length, nullptr)) return 1;
  GtkCssProvider* style = gtk_css_provider_new();
  gtk_css_provider_load_from_data(style, "textview text { background: white; color: rgba(0, 0, 0, 0.7); }",
                                  -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(style),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  GtkWidget* window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), std::atoi(argv[1]), std::atoi(argv[2]));
  GtkWidget* view = gtk_text_view_new();
  gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD_CHAR);
  gtk_text_view_set_left_margin(GTK_TEXT_VIEW(view), 8);
  gtk_text_view_set_top_margin(GTK_TEXT_VIEW(view), 8);
  GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
  gtk_text_buffer_set_text(buffer, text, static_cast<int>(length));
  GtkTextIter start;
  gtk_text_buffer_get_start_iter(buffer, &start);
  gtk_text_buffer_place_cursor(buffer, &start);
  GtkWidget* scrolled = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), view);
  gtk_window_set_child(GTK_WINDOW(window), scrolled);
  gtk_window_present(GTK_WINDOW(window));
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
