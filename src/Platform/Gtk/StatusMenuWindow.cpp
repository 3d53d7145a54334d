#include "Platform/Gtk/StatusMenuWindow.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkEditActions.h"
#include "Platform/Gtk/WindowSystem.h"

#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr const char* numberOfItem = "velkin-menu-item";
constexpr int spacing = 6;

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

/// The keys that do the same, as the desktop writes them; empty if there are none.
std::string keysOf(const NSMenuItem& item) {
  if (item.keyEquivalent().empty()) return {};
  const auto key = static_cast<unsigned char>(item.keyEquivalent().front());
  const auto mask = item.keyEquivalentModifierMask();
  unsigned modifiers = 0;
  if ((mask & NSMenuItem::commandMask) != 0) modifiers |= GDK_CONTROL_MASK;
  if ((mask & NSMenuItem::optionMask) != 0) modifiers |= GDK_ALT_MASK;
  if ((mask & NSMenuItem::controlMask) != 0) modifiers |= GDK_SUPER_MASK;
  if ((mask & NSMenuItem::shiftMask) != 0 || std::isupper(key) != 0) modifiers |= GDK_SHIFT_MASK;
  const GStringPtr label(
      gtk_accelerator_get_label(gdk_unicode_to_keyval(static_cast<unsigned>(std::tolower(key))),
                                static_cast<GdkModifierType>(modifiers)));
  return label.get();
}

GtkWidget* labelFor(const char* content) {
  GtkWidget* label = gtk_label_new(content);
  // A button's text is bold, a menu's isn't.
  gtk_widget_add_css_class(label, "body");
  return label;
}

}  // namespace

StatusMenuWindow::StatusMenuWindow(std::shared_ptr<NSMenu> menu, Events events)
    : menu_(std::move(menu)), events_(std::move(events)) {}

StatusMenuWindow::~StatusMenuWindow() { takeDown(); }

GtkWidget* StatusMenuWindow::row(std::size_t number) {
  const auto& item = *menu_->items()[number];
  if (item.isSeparatorItem()) return gtk_separator_new(GTK_ORIENTATION_HORIZONTAL);
  GtkWidget* line = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing);
  GtkWidget* mark = labelFor(markOf(item.state()));
  gtk_label_set_width_chars(GTK_LABEL(mark), 2);
  gtk_box_append(GTK_BOX(line), mark);
  GtkWidget* title = labelFor(item.title().c_str());
  gtk_label_set_xalign(GTK_LABEL(title), 0);
  gtk_widget_set_hexpand(title, TRUE);
  gtk_box_append(GTK_BOX(line), title);
  GtkWidget* keys = labelFor(keysOf(item).c_str());
  gtk_widget_add_css_class(keys, "dim-label");
  gtk_widget_set_margin_start(keys, 2 * spacing);
  gtk_box_append(GTK_BOX(line), keys);
  auto* button = GTK_WIDGET(g_object_new(
      GTK_TYPE_BUTTON, "accessible-role",
      item.isCheckable() ? GTK_ACCESSIBLE_ROLE_MENU_ITEM_CHECKBOX : GTK_ACCESSIBLE_ROLE_MENU_ITEM, nullptr));
  gtk_accessible_update_property(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_PROPERTY_LABEL, item.title().c_str(),
                                 -1);
  if (item.isCheckable()) {
    const auto state = item.state() == NSMenuItem::State::on    ? GTK_ACCESSIBLE_TRISTATE_TRUE
                       : item.state() == NSMenuItem::State::off ? GTK_ACCESSIBLE_TRISTATE_FALSE
                                                                : GTK_ACCESSIBLE_TRISTATE_MIXED;
    gtk_accessible_update_state(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_STATE_CHECKED, state, -1);
  }
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

std::optional<PixelPoint> StatusMenuWindow::wantedPlace(std::optional<PixelPoint> icon) const {
  const auto& system = WindowSystem::present();
  std::size_t primary = 0;
  const auto monitors = system.monitors(primary);
  if (monitors.empty()) return std::nullopt;
  int width = 0;
  int height = 0;
  GtkWidget* rows = gtk_window_get_child(window_);
  gtk_widget_measure(rows, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &width, nullptr, nullptr);
  gtk_widget_measure(rows, GTK_ORIENTATION_VERTICAL, width, nullptr, &height, nullptr, nullptr);
  const int scale = system.scale();
  const auto rect = placeAtIcon(system.iconPlace(icon, true), width * scale, height * scale, monitors,
                                system.struts(), primary);
  return PixelPoint{rect.x, rect.y};
}

void StatusMenuWindow::moveTo(std::optional<PixelPoint> icon) {
  const auto& system = WindowSystem::present();
  if (gtk_widget_get_mapped(GTK_WIDGET(window_)) == FALSE) {
    if (const auto place = wantedPlace(icon)) system.setPositionHint(window_, *place);
    return;
  }
  system.placeAtIcon(window_, {[this, icon, alive = isAlive_.watch()]() -> std::optional<PixelPoint> {
                                 if (!alive || window_ == nullptr) return std::nullopt;
                                 return wantedPlace(icon);
                               },
                               std::nullopt, [] {}, [] {}});
}

bool StatusMenuWindow::keyPressed(guint key, GdkModifierType state) {
  // The key that puts the menu up takes it down again.
  const bool isOwnKey = key == GDK_KEY_comma && (state & GDK_CONTROL_MASK) != 0;
  if (key != GDK_KEY_Escape && !isOwnKey) return false;
  close();
  return true;
}

void StatusMenuWindow::show(std::optional<PixelPoint> icon) {
  takeDown();
  GtkWindow* const below = windowWithKeyboard();
  window_ = GTK_WINDOW(gtk_window_new());
  // The popover keeps itself above other windows, but for those that belong to it.
  gtk_window_set_transient_for(window_, below);
  gtk_window_set_title(window_, "Velkin - Menu");
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_resizable(window_, FALSE);
  for (const char* name : {"velkin-panel", "frameless"}) gtk_widget_add_css_class(GTK_WIDGET(window_), name);
  auto* rows = GTK_WIDGET(g_object_new(GTK_TYPE_BOX, "orientation", GTK_ORIENTATION_VERTICAL,
                                       "accessible-role", GTK_ACCESSIBLE_ROLE_MENU, nullptr));
  for (const auto set : {gtk_widget_set_margin_start, gtk_widget_set_margin_end, gtk_widget_set_margin_top,
                         gtk_widget_set_margin_bottom}) {
    set(rows, spacing);
  }
  for (std::size_t i = 0; i < menu_->items().size(); ++i) {
    if (!menu_->items()[i]->isHidden()) gtk_box_append(GTK_BOX(rows), row(i));
  }
  gtk_window_set_child(window_, rows);
  GtkEventController* keys = gtk_event_controller_key_new();
  g_signal_connect(keys, "key-pressed",
                   G_CALLBACK(+[](GtkEventControllerKey*, guint key, guint, GdkModifierType state,
                                  gpointer self) -> gboolean {
                     return static_cast<StatusMenuWindow*>(self)->keyPressed(key, state) ? TRUE : FALSE;
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
  const auto& system = WindowSystem::present();
  system.setIsDialog(window_, true);
  system.setSkipsTaskbar(window_, true);
  moveTo(icon);
  gtk_window_present(window_);
  // Once more: window managers read the hint before the toolkit has rewritten it, or after.
  moveTo(icon);
  system.keepAbove(window_);
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
