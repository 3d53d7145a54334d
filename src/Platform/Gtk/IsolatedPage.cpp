#include "Platform/Gtk/IsolatedPage.h"

#include <string_view>

namespace platform {

namespace {

/// The page that was handed to the view, and places in it.
bool isOwnPage(const char* uri) {
  const std::string_view address = uri != nullptr ? uri : "";
  return address == "about:blank" || address.starts_with("about:blank#");
}

gboolean decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
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

}  // namespace

void isolatePage(WebKitWebView* view) {
  g_signal_connect(view, "decide-policy", G_CALLBACK(decidePolicy), nullptr);
  g_signal_connect(view, "permission-request", G_CALLBACK(denyPermission), nullptr);
  g_signal_connect(view, "run-file-chooser", G_CALLBACK(refuseFiles), nullptr);
  g_signal_connect(view, "context-menu", G_CALLBACK(keepReadersItems), nullptr);
  g_signal_connect(view, "script-dialog", G_CALLBACK(handled), nullptr);
  g_signal_connect(view, "print", G_CALLBACK(handled), nullptr);
  g_signal_connect(view, "enter-fullscreen", G_CALLBACK(handled), nullptr);
}

}  // namespace platform
