#include "Platform/Gtk/PageWindow.h"

#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkSymbols.h"
#include "Platform/URL.h"

#include <algorithm>
#include <optional>
#include <string>

namespace platform {

namespace {

constexpr int stripMargin = 10;

}  // namespace

WebKitWebView* PageWindow::open(WebKitWebView* opener, WebEngine& engine,
                                void (*teach)(WebKitWebView*, WebEngine&)) {
  auto* view = std::unique_ptr<PageWindow>(new PageWindow(opener, engine)).release()->view_.get();
  teach(view, engine);
  return view;
}

PageWindow::PageWindow(WebKitWebView* opener, WebEngine& engine) : engine_(engine) {
  view_ = GObjectPtr<WebKitWebView>::retain(WEBKIT_WEB_VIEW(g_object_new(
      WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings", webkit_web_view_get_settings(opener),
      "user-content-manager", webkit_web_view_get_user_content_manager(opener), nullptr)));
  window_ = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window_, "Velkin");
  watchKeys(window_);
  if (engine.popover().window() != nullptr) gtk_window_set_transient_for(window_, engine.popover().window());
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  place_ = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
  gtk_widget_set_margin_start(place_, stripMargin);
  gtk_widget_set_margin_end(place_, stripMargin);
  gtk_widget_set_margin_top(place_, stripMargin / 2);
  gtk_widget_set_margin_bottom(place_, stripMargin / 2);
  lock_ = gtk_image_new();
  address_ = gtk_label_new(nullptr);
  gtk_label_set_ellipsize(GTK_LABEL(address_), PANGO_ELLIPSIZE_START);
  gtk_label_set_xalign(GTK_LABEL(address_), 0);
  gtk_widget_set_hexpand(address_, TRUE);
  gtk_box_append(GTK_BOX(place_), lock_);
  gtk_box_append(GTK_BOX(place_), address_);
  gtk_box_append(GTK_BOX(box), place_);
  gtk_widget_set_vexpand(GTK_WIDGET(view_.get()), TRUE);
  gtk_box_append(GTK_BOX(box), GTK_WIDGET(view_.get()));
  gtk_window_set_child(window_, box);
  g_signal_connect_swapped(view_.get(), "ready-to-show", G_CALLBACK(+[](PageWindow* self) { self->show(); }),
                           this);
  g_signal_connect_swapped(view_.get(), "close", G_CALLBACK(+[](PageWindow* self) { self->closeLater(); }),
                           this);
  // What it was opened for can't go on without the page that waits for it.
  g_signal_connect_swapped(view_.get(), "web-process-terminated",
                           G_CALLBACK(+[](PageWindow* self) { self->closeLater(); }), this);
  g_signal_connect_swapped(view_.get(), "notify::title",
                           G_CALLBACK(+[](PageWindow* self) { self->retitle(); }), this);
  g_signal_connect_swapped(view_.get(), "notify::uri", G_CALLBACK(+[](PageWindow* self) { self->retitle(); }),
                           this);
  // Whether the connection is encrypted is known when the page has begun to come.
  g_signal_connect_swapped(view_.get(), "load-changed",
                           G_CALLBACK(+[](PageWindow* self) { self->retitle(); }), this);
  g_signal_connect_swapped(window_, "destroy",
                           G_CALLBACK(+[](PageWindow* self) { std::default_delete<PageWindow>()(self); }),
                           this);
}

PageWindow::~PageWindow() {
  if (closing_ != 0) g_source_remove(closing_);
  g_signal_handlers_disconnect_by_data(view_.get(), this);
  g_signal_handlers_disconnect_by_data(window_, this);
}

void PageWindow::closeLater() {
  // The engine is in the middle of a call on the view.
  if (closing_ != 0) return;
  closing_ = g_idle_add(
      [](gpointer data) -> gboolean {
        auto* self = static_cast<PageWindow*>(data);
        self->closing_ = 0;
        gtk_window_destroy(self->window_);
        return G_SOURCE_REMOVE;
      },
      this);
}

void PageWindow::show() {
  WebKitWindowProperties* properties = webkit_web_view_get_window_properties(view_.get());
  GdkRectangle wanted;
  webkit_window_properties_get_geometry(properties, &wanted);
  const auto within = [](int length, int usual) { return length > 100 ? std::min(length, 1200) : usual; };
  gtk_window_set_default_size(window_, within(wanted.width, 520), within(wanted.height, 640));
  pin_ = engine_.popover().keepOpen();
  gtk_window_present(window_);
}

void PageWindow::retitle() {
  const char* uri = webkit_web_view_get_uri(view_.get());
  const auto url = URL::parseReported(uri != nullptr ? uri : "");
  const auto host = url ? url->host() : std::nullopt;
  GTlsCertificate* certificate = nullptr;
  GTlsCertificateFlags problems = G_TLS_CERTIFICATE_NO_FLAGS;
  const bool isEncrypted = url && url->scheme() == "https" &&
                           webkit_web_view_get_tls_info(view_.get(), &certificate, &problems) != FALSE &&
                           problems == G_TLS_CERTIFICATE_NO_FLAGS;
  const std::string place = host ? *host : "An empty page";
  const auto told = !host || isEncrypted ? place : place + " (not encrypted)";
  showSymbol(GTK_IMAGE(lock_), isEncrypted ? "channel-secure-symbolic" : "channel-insecure-symbolic");
  gtk_widget_set_visible(lock_, host.has_value());
  gtk_label_set_text(GTK_LABEL(address_), told.c_str());
  gtk_widget_set_tooltip_text(place_,
                              isEncrypted ? "The connection is encrypted" : "The connection isn’t encrypted");
  // First of all where it is: a page can call itself what it likes.
  const char* title = webkit_web_view_get_title(view_.get());
  const auto full = title != nullptr && *title != '\0' ? told + " – " + title : told;
  gtk_window_set_title(window_, full.c_str());
}

}  // namespace platform
