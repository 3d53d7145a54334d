#include "Platform/Gtk/IsolatedPage.h"

#include "Platform/Gtk/GObjectPtr.h"

#include <array>
#include <string_view>

namespace platform {

namespace {

/// The page that was handed to the view, and places in it.
bool isOwnPage(const char* uri) {
  const std::string_view address = uri != nullptr ? uri : "";
  return address == "about:blank" || address.starts_with("about:blank#");
}

gboolean stayOnOwnPage(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                       gpointer) {
  if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
    auto* action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    if (isOwnPage(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)))) return FALSE;
  }
  webkit_policy_decision_ignore(decision);
  return TRUE;
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
  webkit_permission_request_deny(request);
  return TRUE;
}

gboolean refuseFiles(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
  webkit_file_chooser_request_cancel(request);
  return TRUE;
}

/// What a reader does with a text; loading, saving and going back and forth make no sense here.
gboolean keepReadersItems(WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer) {
  GList* items = g_list_copy(webkit_context_menu_get_items(menu));
  for (GList* entry = items; entry != nullptr; entry = entry->next) {
    auto* item = static_cast<WebKitContextMenuItem*>(entry->data);
    const auto action = webkit_context_menu_item_get_stock_action(item);
    if (action != WEBKIT_CONTEXT_MENU_ACTION_COPY && action != WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL &&
        action != WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD) {
      webkit_context_menu_remove(menu, item);
    }
  }
  g_list_free(items);
  // An empty menu is not worth opening.
  return webkit_context_menu_get_n_items(menu) == 0;
}

gboolean handled() { return TRUE; }

/// The source of a policy that stands for this very text.
std::string hashSource(const std::string& script) {
  constexpr std::size_t digestSize = 32;
  std::array<guint8, digestSize> digest{};
  gsize size = digest.size();
  GChecksum* checksum = g_checksum_new(G_CHECKSUM_SHA256);
  g_checksum_update(checksum, reinterpret_cast<const guchar*>(script.data()),
                    static_cast<gssize>(script.size()));
  g_checksum_get_digest(checksum, digest.data(), &size);
  g_checksum_free(checksum);
  const GStringPtr text(g_base64_encode(digest.data(), size));
  return std::string("'sha256-").append(text.get()).append(1, '\'');
}

/// A link element connects and looks names up in spite of a page's policy.
constexpr std::array<std::string_view, 9> unwantedFeatures = {"LinkPreconnect",  "LinkPreconnectEarlyHints",
                                                              "LinkDNSPrefetch", "LinkPrefetch",
                                                              "LinkPreload",     "BeaconAPI",
                                                              "MediaDevices",    "ServiceWorkers",
                                                              "SharedWorker"};

}  // namespace

std::string isolatedContentSecurityPolicy(const std::vector<std::string>& scripts, bool pictures) {
  std::string policy = "default-src 'none'; style-src 'unsafe-inline'; img-src data:";
  if (pictures) policy += " https:";
  policy += "; font-src data:; form-action 'none'; base-uri 'none'; script-src";
  if (scripts.empty()) return policy + " 'none'";
  // An event handler counts as a script only with this word.
  policy += " 'unsafe-hashes'";
  for (const auto& script : scripts) policy.append(1, ' ').append(hashSource(script));
  return policy;
}

WebKitWebContext* makeIsolatedContext() {
  // Megabytes. From half of it on a process collects its garbage whenever it looks; a page at rest stays
  // below.
  constexpr guint limit = 120;
  constexpr double secondsBetweenLooks = 5;
  auto* settings = webkit_memory_pressure_settings_new();
  webkit_memory_pressure_settings_set_memory_limit(settings, limit);
  webkit_memory_pressure_settings_set_poll_interval(settings, secondsBetweenLooks);
  auto* context = WEBKIT_WEB_CONTEXT(
      g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings", settings, nullptr));
  webkit_memory_pressure_settings_free(settings);
  return context;
}

void isolateSettings(WebKitSettings* settings) {
  WebKitFeatureList* features = webkit_settings_get_all_features();
  for (gsize i = 0; i < webkit_feature_list_get_length(features); ++i) {
    WebKitFeature* feature = webkit_feature_list_get(features, i);
    for (const auto unwanted : unwantedFeatures) {
      if (unwanted == webkit_feature_get_identifier(feature))
        webkit_settings_set_feature_enabled(settings, feature, FALSE);
    }
  }
  webkit_feature_list_unref(features);
  webkit_settings_set_enable_media_stream(settings, FALSE);
  webkit_settings_set_enable_webrtc(settings, FALSE);
  webkit_settings_set_enable_webgl(settings, FALSE);
  webkit_settings_set_enable_media(settings, FALSE);
  // A page that is left is gone, and not kept for a way back.
  webkit_settings_set_enable_page_cache(settings, FALSE);
  webkit_settings_set_enable_html5_database(settings, FALSE);
  webkit_settings_set_enable_html5_local_storage(settings, FALSE);
}

void isolatePage(WebKitWebView* view) {
  g_signal_connect(view, "decide-policy", G_CALLBACK(stayOnOwnPage), nullptr);
  g_signal_connect(view, "permission-request", G_CALLBACK(denyPermission), nullptr);
  g_signal_connect(view, "run-file-chooser", G_CALLBACK(refuseFiles), nullptr);
  g_signal_connect(view, "context-menu", G_CALLBACK(keepReadersItems), nullptr);
  g_signal_connect(view, "script-dialog", G_CALLBACK(handled), nullptr);
  g_signal_connect(view, "print", G_CALLBACK(handled), nullptr);
  g_signal_connect(view, "enter-fullscreen", G_CALLBACK(handled), nullptr);
}

}  // namespace platform
