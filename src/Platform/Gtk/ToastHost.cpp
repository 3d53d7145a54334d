#include "Platform/Gtk/ToastHost.h"

#include <memory>
#include <utility>

namespace platform {

GtkWidget* ToastHost::wrap(GtkWidget* child) {
  overlay_ = adw_toast_overlay_new();
  adw_toast_overlay_set_child(ADW_TOAST_OVERLAY(overlay_), child);
  return overlay_;
}

void ToastHost::show(const std::string& text) { show(text, {}, {}); }

std::shared_ptr<void> ToastHost::showUntil(const std::string& text) {
  if (overlay_ == nullptr) return nullptr;
  const std::unique_ptr<char, decltype(&g_free)> escaped(g_markup_escape_text(text.c_str(), -1), g_free);
  AdwToast* toast = adw_toast_new(escaped.get());
  // The overlay takes over the reference that it is given.
  const auto held = GObjectPtr<AdwToast>::retain(toast);
  adw_toast_overlay_add_toast(ADW_TOAST_OVERLAY(overlay_), toast);
  return {toast, [held](void*) { adw_toast_dismiss(held.get()); }};
}

void ToastHost::show(const std::string& text, const std::string& button, std::function<void()> action) {
  if (overlay_ == nullptr) return;
  const std::unique_ptr<char, decltype(&g_free)> escaped(g_markup_escape_text(text.c_str(), -1), g_free);
  AdwToast* toast = adw_toast_new(escaped.get());
  // The toolkit's own title is cut off at the end of its line, where the reason stands.
  GtkWidget* title = gtk_label_new(text.c_str());
  gtk_label_set_wrap(GTK_LABEL(title), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(title), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_xalign(GTK_LABEL(title), 0);
  constexpr int lineLength = 44;
  gtk_label_set_max_width_chars(GTK_LABEL(title), lineLength);
  gtk_widget_add_css_class(title, "heading");
  adw_toast_set_custom_title(toast, title);
  const bool hasButton = static_cast<bool>(action);
  if (hasButton) {
    adw_toast_set_button_label(toast, button.c_str());
    g_signal_connect_data(
        toast, "button-clicked",
        G_CALLBACK(+[](AdwToast*, gpointer data) { (*static_cast<std::function<void()>*>(data))(); }),
        std::make_unique<std::function<void()>>(std::move(action)).release(),
        [](gpointer data, GClosure*) {
          std::default_delete<std::function<void()>>()(static_cast<std::function<void()>*>(data));
        },
        GConnectFlags(0));
  }
  if (!hasButton) {
    if (plain_) adw_toast_dismiss(plain_.get());
    plain_ = GObjectPtr<AdwToast>::retain(toast);
  }
  adw_toast_overlay_add_toast(ADW_TOAST_OVERLAY(overlay_), toast);
}

}  // namespace platform
