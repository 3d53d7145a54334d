// The least that a panel called up by a hot key can be: a grab of Ctrl+Shift+E, and a bare window with one
// entry, made anew at each opening.
#include <gdk/x11/gdkx.h>
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <xcb/xcb.h>

namespace {

GtkWidget* window = nullptr;

void toggle(guint32 time) {
  if (window != nullptr) {
    gtk_window_destroy(GTK_WINDOW(window));
    window = nullptr;
    return;
  }
  window = gtk_window_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 720, 200);
  GtkWidget* entry = gtk_entry_new();
  gtk_window_set_child(GTK_WINDOW(window), entry);
  gtk_widget_realize(window);
  gdk_x11_surface_set_user_time(gtk_native_get_surface(GTK_NATIVE(window)), time);
  gtk_window_present_with_time(GTK_WINDOW(window), time);
  gtk_widget_grab_focus(entry);
}

gboolean drain(gint, GIOCondition, gpointer data) {
  auto* connection = static_cast<xcb_connection_t*>(data);
  while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
    if ((event->response_type & 0x7F) == XCB_KEY_PRESS) {
      toggle(reinterpret_cast<xcb_key_press_event_t*>(event)->time);
    }
    free(event);
  }
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main() {
  gtk_init();
  auto* connection = xcb_connect(nullptr, nullptr);
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  constexpr xcb_keycode_t keyE = 26;
  xcb_grab_key(connection, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT, keyE, XCB_GRAB_MODE_ASYNC,
               XCB_GRAB_MODE_ASYNC);
  xcb_flush(connection);
  g_unix_fd_add(xcb_get_file_descriptor(connection), G_IO_IN, drain, connection);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
