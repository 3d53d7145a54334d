#include "Platform/Gtk/GtkSystemServices.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/DocumentPrinting.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/LoginItem.h"
#include "Platform/Gtk/PortalRequest.h"
#include "Platform/Gtk/WindowSystem.h"
#include "platform/BundleInfo.h"

#include <utility>

#include <gtk/gtk.h>
#include <unistd.h>

namespace platform {

namespace {

std::vector<GObjectPtr<GtkWindow>> windowsOnShow() {
  std::vector<GObjectPtr<GtkWindow>> found;
  GListModel* windows = gtk_window_get_toplevels();
  for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
    auto window = GObjectPtr<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, i)));
    if (gtk_widget_get_mapped(GTK_WIDGET(window.get()))) found.push_back(std::move(window));
  }
  return found;
}

NSError serviceError(const std::string& why) { return {NSCocoaErrorDomain, 1, why}; }

}  // namespace

bool GtkSystemServices::setLoginItemEnabled(const std::string& identifier, bool isEnabled) {
  return LoginItem::setEnabled(identifier, isEnabled, surroundings_.connection());
}

std::vector<CGWindow> GtkSystemServices::windowsOnScreen() {
  surroundings_.startToolkit();
  std::vector<CGWindow> windows;
  for (const auto& window : windowsOnShow()) {
    CGWindow told{bundle::name, ::getpid()};
    told.number = WindowSystem::present().numberOf(window.get());
    windows.push_back(std::move(told));
  }
  return windows;
}

void GtkSystemServices::activate(int processIdentifier) {
  if (processIdentifier != ::getpid()) return;
  surroundings_.startToolkit();
  for (const auto& window : windowsOnShow()) gtk_window_present(window.get());
}

void GtkSystemServices::captureScreen(const ScreenCapture& capture,
                                      std::function<void(tl::expected<std::string, NSError>)> completion) {
  auto* const connection = surroundings_.connection();
  if (connection == nullptr) {
    DispatchQueue::main().async([completion = std::move(completion)] {
      completion(tl::unexpected(serviceError("There is no D-Bus session")));
    });
    return;
  }
  // The portal lets the user choose a window, and no program.
  const auto parameters = [&capture](const char* token) {
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token));
    g_variant_builder_add(&options, "{sv}", "modal", g_variant_new_boolean(TRUE));
    g_variant_builder_add(&options, "{sv}", "interactive", g_variant_new_boolean(capture.isInteractive));
    return g_variant_new("(s@a{sv})", "", g_variant_builder_end(&options));
  };
  callPortal(connection, "org.freedesktop.portal.Screenshot", "Screenshot", parameters,
             [completion = std::move(completion)](const PortalAnswer& answer) {
               if (!answer) return completion(tl::unexpected(serviceError(answer.error())));
               const char* uri = nullptr;
               if (!g_variant_lookup(answer->get(), "uri", "&s", &uri)) {
                 return completion(tl::unexpected(serviceError("The desktop told of no picture")));
               }
               completion(std::string(uri));
             });
}

void GtkSystemServices::printDocument(const std::string& pdf, const NSPrintInfo& info,
                                      std::function<void(std::optional<NSError>)> ended) {
  surroundings_.startToolkit();
  const auto windows = windowsOnShow();
  showPrintDialogue(
      pdf, info, windows.empty() ? nullptr : windows.front().get(),
      [pin = surroundings_.keepOpen(), ended = std::move(ended)](const auto& error) { ended(error); });
}

}  // namespace platform
