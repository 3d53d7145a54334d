// The least that a panel like the Appearance panel can be: at SIGHUP a bare window comes with as many
// widgets of each kind as that one has, and one web view; at the next one it goes.
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <webkit/webkit.h>

namespace {

// As they stand in the panel; what is inside of a control comes with it.
constexpr int columns = 8;
constexpr int choices = 16;
constexpr int buttons = 7;
constexpr int labels = 14;
constexpr int images = 8;
constexpr int pictures = 1;
constexpr int boxes = 87;
constexpr int overlays = 8;
constexpr int separators = 7;

GtkWidget* window = nullptr;

void add(GtkGrid* grid, int& place, GtkWidget* widget) {
  gtk_grid_attach(grid, widget, place % columns, place / columns, 1, 1);
  ++place;
}

GtkWidget* makePanel() {
  GtkWidget* panel = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(panel), 680, 720);
  GtkWidget* grid = gtk_grid_new();
  int place = 0;
  GtkWidget* first = nullptr;
  for (int i = 0; i < choices; ++i) {
    GtkWidget* choice = gtk_check_button_new_with_label("Medium");
    if (first == nullptr) {
      first = choice;
    } else {
      gtk_check_button_set_group(GTK_CHECK_BUTTON(choice), GTK_CHECK_BUTTON(first));
    }
    add(GTK_GRID(grid), place, choice);
  }
  for (int i = 0; i < labels; ++i) add(GTK_GRID(grid), place, gtk_label_new("Window Size"));
  for (int i = 0; i < buttons; ++i) add(GTK_GRID(grid), place, gtk_button_new_with_label("Onboarding"));
  for (int i = 0; i < images; ++i)
    add(GTK_GRID(grid), place, gtk_image_new_from_icon_name("system-search-symbolic"));
  for (int i = 0; i < boxes; ++i) add(GTK_GRID(grid), place, gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
  for (int i = 0; i < overlays; ++i) add(GTK_GRID(grid), place, gtk_overlay_new());
  for (int i = 0; i < pictures; ++i) add(GTK_GRID(grid), place, gtk_picture_new());
  for (int i = 0; i < separators; ++i)
    add(GTK_GRID(grid), place, gtk_separator_new(GTK_ORIENTATION_HORIZONTAL));
  GtkWidget* page = webkit_web_view_new();
  webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(WEBKIT_WEB_VIEW(page)),
                                                   WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
  gtk_widget_set_size_request(page, 64, 64);
  webkit_web_view_load_html(
      WEBKIT_WEB_VIEW(page),
      "<html><body style='overflow:hidden'>Of course! Here is a short plan</body></html>", nullptr);
  add(GTK_GRID(grid), place, page);
  gtk_window_set_child(GTK_WINDOW(panel), grid);
  return panel;
}

gboolean toggle(gpointer) {
  if (window != nullptr) {
    gtk_window_destroy(GTK_WINDOW(window));
    window = nullptr;
    return G_SOURCE_CONTINUE;
  }
  window = makePanel();
  gtk_window_present(GTK_WINDOW(window));
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main() {
  gtk_init();
  // Not one of the signals for users: the web engine takes them for itself.
  g_unix_signal_add(SIGHUP, toggle, nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
