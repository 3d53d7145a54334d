#include "Platform/Gtk/StatusMenuWindow.h"

#include "Platform/Gtk/X11Desktop.h"

#include <string>
#include <utility>

namespace platform {

namespace {

constexpr const char* numberOfItem = "velkin-menu-item";
constexpr int margin = 6;

/// Of the width of a check mark, so that all titles start in one line.
const char* markOf(NSMenuItem::State state) {
  switch (state) {
    case NSMenuItem::State::on:
      return "✓";
    case NSMenuItem::State::mixed:
      return "–";
    default:
      return " ";
  }
}

}  // namespace

StatusMenuWindow::StatusMenuWindow(std::shared_ptr<NSMenu> menu, Events events)
    : menu_(std::move(menu)), events_(std::move(events)) {}

StatusMenuWindow::~StatusMenuWindow() { takeDown(); }

GtkWidget* StatusMenuWindow::row(std::size_t number) {
  const auto& item = *menu_->items()[number];
  if (item.isSeparatorItem()) return gtk_separator_new(GTK_ORIENTATION_HORIZONTAL);
  GtkWidget* line = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, margin);
  GtkWidget* mark = gtk_label_new(markOf(item.state()));
  gtk_label_set_width_chars(GTK_LABEL(mark), 2);
  gtk_box_append(GTK_BOX(line), mark);
  gtk_box_append(GTK_BOX(line), gtk_label_new(item.title().c_str()));
  GtkWidget* button = gtk_button_new();
  gtk_button_set_has_frame(GTK_BUTTON(button), FALSE);
  gtk_button_set_child(GTK_BUTTON(button), line);
  gtk_widget_set_sensitive(button, item.isEnabled());
  g_object_set_data(G_OBJECT(button), numberOfItem, GSIZE_TO_POINTER(number));
  g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, gpointer data) {
                     auto* self = static_cast<StatusMenuWindow*>(data);
                     const auto chosen = GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(clicked), numberOfItem));
                     self->takeDown();
                     self->events_.chosen(chosen);
                   }),
                   this);
  return button;
}

void StatusMenuWindow::show() {
  if (window_ != nullptr) {
    gtk_window_present(window_);
    return;
  }
  window_ = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window_, "Velkin - Menu");
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_resizable(window_, FALSE);
  GtkWidget* rows = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  for (const auto set : {gtk_widget_set_margin_start, gtk_widget_set_margin_end, gtk_widget_set_margin_top,
                         gtk_widget_set_margin_bottom}) {
    set(rows, margin);
  }
  for (std::size_t i = 0; i < menu_->items().size(); ++i) {
    if (!menu_->items()[i]->isHidden()) gtk_box_append(GTK_BOX(rows), row(i));
  }
  gtk_window_set_child(window_, rows);
  GtkEventController* keys = gtk_event_controller_key_new();
  g_signal_connect(
      keys, "key-pressed",
      G_CALLBACK(+[](GtkEventControllerKey*, guint key, guint, GdkModifierType, gpointer self) -> gboolean {
        if (key != GDK_KEY_Escape) return FALSE;
        static_cast<StatusMenuWindow*>(self)->close();
        return TRUE;
      }),
      this);
  gtk_widget_add_controller(GTK_WIDGET(window_), keys);
  g_signal_connect_swapped(window_, "notify::is-active", G_CALLBACK(+[](StatusMenuWindow* self) {
                             if (!gtk_window_is_active(self->window_)) self->close();
                           }),
                           this);
  g_signal_connect(window_, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer self) -> gboolean {
                     static_cast<StatusMenuWindow*>(self)->close();
                     return TRUE;
                   }),
                   this);
  gtk_widget_realize(GTK_WIDGET(window_));
  if (X11Desktop::isAvailable()) {
    X11Desktop::setIsDialog(window_, true);
    X11Desktop::setSkipsTaskbar(window_, true);
    X11Desktop::setPositionHint(window_, X11Desktop::pointer());
  }
  gtk_window_present(window_);
}

void StatusMenuWindow::takeDown() {
  GtkWindow* window = std::exchange(window_, nullptr);
  if (window == nullptr) return;
  g_signal_handlers_disconnect_by_data(window, this);
  gtk_window_destroy(window);
}

void StatusMenuWindow::close() {
  if (window_ == nullptr) return;
  takeDown();
  events_.closed();
}

}  // namespace platform
