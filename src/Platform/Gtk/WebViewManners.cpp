#include "Platform/Gtk/WebViewManners.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageDialogues.h"
#include "Platform/Gtk/PageFileDrops.h"
#include "Platform/Gtk/PagePermissions.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/PageWindow.h"
#include "Platform/NSWorkspace.h"

#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace platform {

namespace {

/// What the engine itself can show; everything else is for the desktop's programs.
constexpr std::array<std::string_view, 7> ownSchemes = {"http", "https", "about", "data",
                                                        "blob", "file",  "ws"};

bool isOwnScheme(std::string_view scheme) {
  for (const auto own : ownSchemes) {
    if (own == scheme) return true;
  }
  return false;
}

void openOutside(const char* uri) {
  const auto url = URL::parseReported(uri != nullptr ? uri : "");
  if (!url) return;
  const auto scheme = url->scheme();
  // A page has no business with the user's files or with running programs by way of them.
  if (scheme == "file" || scheme == "javascript" || scheme == "data" || scheme == "about" || scheme == "blob")
    return;
  NSWorkspace::shared().open(*url);
}

/// One window or browser for what the user did once; a page that wants more is told of once.
bool mayOpen(WebKitWebView* view, WebKitNavigationAction* action, WebEngine& engine) {
  auto& state = PageState::of(view);
  if (state.mayOpen(webkit_navigation_action_is_user_gesture(action))) return true;
  if (!std::exchange(state.hasToldOfOpenings, true))
    engine.notify("Velkin kept this page from opening more windows");
  return false;
}

/// A link that was clicked with Ctrl, or with the middle button: the user wants it beside this page.
bool isMeantForBrowser(WebKitNavigationAction* action) {
  return webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED &&
         webkit_navigation_action_is_user_gesture(action) != FALSE &&
         (webkit_navigation_action_get_mouse_button(action) == GDK_BUTTON_MIDDLE ||
          (webkit_navigation_action_get_modifiers(action) & GDK_CONTROL_MASK) != 0);
}

gboolean decidePolicy(WebKitWebView* view, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                      gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    auto* response = WEBKIT_RESPONSE_POLICY_DECISION(decision);
    bool isAttachment = !webkit_response_policy_decision_is_mime_type_supported(response);
    SoupMessageHeaders* headers =
        webkit_uri_response_get_http_headers(webkit_response_policy_decision_get_response(response));
    char* disposition = nullptr;
    if (headers != nullptr && soup_message_headers_get_content_disposition(headers, &disposition, nullptr)) {
      isAttachment = isAttachment || g_ascii_strcasecmp(disposition, "attachment") == 0;
      g_free(disposition);
    }
    // Only the page's own document: a picture of a type unknown to the engine is no download.
    if (!isAttachment || !webkit_response_policy_decision_is_main_frame_main_resource(response)) return FALSE;
    webkit_policy_decision_download(decision);
    return TRUE;
  }
  auto* action =
      webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
    if (mayOpen(view, action, engine)) openOutside(uri);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  if (isMeantForBrowser(action)) {
    if (mayOpen(view, action, engine)) openOutside(uri);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  const GStringPtr scheme(g_uri_parse_scheme(uri));
  if (scheme && !isOwnScheme(scheme.get())) {
    if (webkit_navigation_action_is_user_gesture(action) && mayOpen(view, action, engine)) openOutside(uri);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  return FALSE;
}

GtkWidget* create(WebKitWebView* opener, WebKitNavigationAction* action, gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  if (!mayOpen(opener, action, engine)) return nullptr;
  if (webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED) {
    openOutside(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
    return nullptr;
  }
  return GTK_WIDGET(PageWindow::open(opener, engine, teachManners));
}

/// What was allowed to the page's site, and can be taken back.
gboolean offerPermissions(WebKitWebView* view, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer data) {
  if (!originOf(view).starts_with("http")) return FALSE;
  struct Target {
    WebKitWebView* view;
    WebEngine* engine;
  };
  const auto action = GObjectPtr<GSimpleAction>::adopt(g_simple_action_new("site-permissions", nullptr));
  g_signal_connect_data(
      action.get(), "activate", G_CALLBACK(+[](GSimpleAction*, GVariant*, gpointer chosen) {
        const auto& target = *static_cast<Target*>(chosen);
        showPermissions(target.view, *target.engine);
      }),
      std::make_unique<Target>(Target{view, static_cast<WebEngine*>(data)}).release(),
      [](gpointer target, GClosure*) { std::default_delete<Target>()(static_cast<Target*>(target)); },
      GConnectFlags(0));
  webkit_context_menu_append(menu, webkit_context_menu_item_new_separator());
  webkit_context_menu_append(menu, webkit_context_menu_item_new_from_gaction(
                                       G_ACTION(action.get()), "Permissions of this site…", nullptr));
  return FALSE;
}

}  // namespace

void teachManners(WebKitWebView* view, WebEngine& engine) {
  // From the start: it counts the presses.
  PageState::of(view);
  g_signal_connect(view, "decide-policy", G_CALLBACK(decidePolicy), &engine);
  g_signal_connect(view, "create", G_CALLBACK(create), &engine);
  g_signal_connect(view, "context-menu", G_CALLBACK(offerPermissions), &engine);
  serveDialogues(view, engine);
  serveFileDrops(view, engine);
  askForPermissions(view, engine);
}

}  // namespace platform
