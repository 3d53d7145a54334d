// The least that a change of view can be: a key press moves a label from one box to the other, and the
// label's colour goes with it from one half of the window to the other.
#include <cstdlib>

#include <gtk/gtk.h>

namespace {

struct Boxes {
  GtkWidget* here;
  GtkWidget* there;
};

gboolean moveLabel(GtkEventControllerKey*, guint key, guint, GdkModifierType, gpointer data) {
  if (key != GDK_KEY_j) return FALSE;
  auto& boxes = *static_cast<Boxes*>(data);
  GtkWidget* label = gtk_widget_get_first_child(boxes.here);
  g_object_ref(label);
  gtk_box_remove(GTK_BOX(boxes.here), label);
  gtk_box_append(GTK_BOX(boxes.there), label);
  g_object_unref(label);
  GtkWidget* here = boxes.here;
  boxes.here = boxes.there;
  boxes.there = here;
  return TRUE;
}

GtkWidget* makeBox() {
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_set_hexpand(box, TRUE);
  return box;
}

}  // namespace

// WIDTH HEIGHT COLOUR-OF-THE-LABEL COLOUR-OF-THE-BOXES
int main(int argc, char** argv) {
  if (argc != 5) return 2;
  gtk_init();
  GtkCssProvider* style = gtk_css_provider_new();
  char* css = g_strdup_printf("label { background: %s; } box { background: %s; }", argv[3], argv[4]);
  gtk_css_provider_load_from_data(style, css, -1);
  g_free(css);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(style),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  GtkWidget* window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), std::atoi(argv[1]), std::atoi(argv[2]));
  Boxes boxes{makeBox(), makeBox()};
  GtkWidget* label = gtk_label_new("label");
  gtk_widget_set_vexpand(label, TRUE);
  gtk_box_append(GTK_BOX(boxes.here), label);
  GtkWidget* both = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_box_set_homogeneous(GTK_BOX(both), TRUE);
  gtk_box_append(GTK_BOX(both), boxes.here);
  gtk_box_append(GTK_BOX(both), boxes.there);
  gtk_window_set_child(GTK_WINDOW(window), both);
  GtkEventController* keys = gtk_event_controller_key_new();
  g_signal_connect(keys, "key-pressed", G_CALLBACK(moveLabel), &boxes);
  gtk_widget_add_controller(window, keys);
  gtk_window_present(GTK_WINDOW(window));
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
