#include "Platform/Gtk/WebViewManners.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/NSWorkspace.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <adwaita.h>

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
  const auto url = URL::parse(uri != nullptr ? uri : "");
  if (!url) return;
  const auto scheme = url->scheme();
  // A page has no business with the user's files or with running programs by way of them.
  if (scheme == "file" || scheme == "javascript" || scheme == "data" || scheme == "about" || scheme == "blob")
    return;
  NSWorkspace::shared().open(*url);
}

std::string originOf(WebKitWebView* view) {
  const char* uri = webkit_web_view_get_uri(view);
  auto* origin = webkit_security_origin_new_for_uri(uri != nullptr ? uri : "about:blank");
  const GStringPtr text(webkit_security_origin_to_string(origin));
  webkit_security_origin_unref(origin);
  return text ? text.get() : "";
}

gboolean decidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                      gpointer) {
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
    openOutside(uri);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  const GStringPtr scheme(g_uri_parse_scheme(uri));
  if (scheme && !isOwnScheme(scheme.get())) {
    if (webkit_navigation_action_is_user_gesture(action)) openOutside(uri);
    webkit_policy_decision_ignore(decision);
    return TRUE;
  }
  return FALSE;
}

/// A small window for what a page opened by script, such as a sign-in. It lives until the page or the user
/// closes it.
class PageWindow {
 public:
  PageWindow(WebKitWebView* opener, WebEngine& engine) : engine_(engine) {
    view_ = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                         webkit_web_view_get_settings(opener), "user-content-manager",
                                         webkit_web_view_get_user_content_manager(opener), nullptr));
    window_ = GTK_WINDOW(gtk_window_new());
    gtk_window_set_title(window_, "Velkin");
    watchKeys(window_);
    if (engine.popover().window() != nullptr)
      gtk_window_set_transient_for(window_, engine.popover().window());
    gtk_window_set_child(window_, GTK_WIDGET(view_));
    teachManners(view_, engine);
    g_signal_connect_swapped(view_, "ready-to-show", G_CALLBACK(+[](PageWindow* self) { self->show(); }),
                             this);
    g_signal_connect_swapped(view_, "close",
                             G_CALLBACK(+[](PageWindow* self) { gtk_window_destroy(self->window_); }), this);
    g_signal_connect_swapped(view_, "notify::title", G_CALLBACK(+[](PageWindow* self) { self->retitle(); }),
                             this);
    g_signal_connect_swapped(window_, "destroy", G_CALLBACK(+[](PageWindow* self) {
                               if (self->isShown_) self->engine_.popover().unpin();
                               std::default_delete<PageWindow>()(self);
                             }),
                             this);
  }

  WebKitWebView* view() const noexcept { return view_; }

 private:
  void show() {
    WebKitWindowProperties* properties = webkit_web_view_get_window_properties(view_);
    GdkRectangle wanted;
    webkit_window_properties_get_geometry(properties, &wanted);
    const auto within = [](int length, int usual) { return length > 100 ? std::min(length, 1200) : usual; };
    gtk_window_set_default_size(window_, within(wanted.width, 520), within(wanted.height, 640));
    isShown_ = true;
    engine_.popover().pin();
    gtk_window_present(window_);
  }

  void retitle() {
    const char* title = webkit_web_view_get_title(view_);
    if (title != nullptr && *title != '\0') gtk_window_set_title(window_, title);
  }

  WebEngine& engine_;
  WebKitWebView* view_;
  GtkWindow* window_;
  bool isShown_ = false;
};

GtkWidget* create(WebKitWebView* opener, WebKitNavigationAction* action, gpointer engine) {
  if (webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED) {
    openOutside(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
    return nullptr;
  }
  // The window owns itself: it ends with its last reference, whoever closes it.
  auto* window = std::make_unique<PageWindow>(opener, *static_cast<WebEngine*>(engine)).release();
  return GTK_WIDGET(window->view());
}

struct FileChoice {
  WebEngine& engine;
  GObjectPtr<WebKitFileChooserRequest> request;
};

void fileChosen(GtkNativeDialog* dialog, int response, gpointer data) {
  const std::unique_ptr<FileChoice> choice(static_cast<FileChoice*>(data));
  if (response == GTK_RESPONSE_ACCEPT) {
    GListModel* files = gtk_file_chooser_get_files(GTK_FILE_CHOOSER(dialog));
    std::vector<std::string> paths;
    for (guint i = 0; i < g_list_model_get_n_items(files); ++i) {
      const auto file = GObjectPtr<GFile>::adopt(G_FILE(g_list_model_get_item(files, i)));
      const GStringPtr path(g_file_get_path(file.get()));
      if (path) paths.emplace_back(path.get());
    }
    g_object_unref(files);
    std::vector<const char*> pointers;
    pointers.reserve(paths.size() + 1);
    for (const auto& path : paths) pointers.push_back(path.c_str());
    pointers.push_back(nullptr);
    webkit_file_chooser_request_select_files(choice->request.get(), pointers.data());
  } else {
    webkit_file_chooser_request_cancel(choice->request.get());
  }
  choice->engine.popover().unpin();
  g_object_unref(dialog);
}

gboolean runFileChooser(WebKitWebView* view, WebKitFileChooserRequest* request, gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  auto* root = gtk_widget_get_root(GTK_WIDGET(view));
  const bool takesSeveral = webkit_file_chooser_request_get_select_multiple(request);
  auto* dialog = gtk_file_chooser_native_new(takesSeveral ? "Choose Files" : "Choose a File",
                                             GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr,
                                             GTK_FILE_CHOOSER_ACTION_OPEN, nullptr, nullptr);
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(dialog), TRUE);
  gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(dialog), takesSeveral);
  if (GtkFileFilter* filter = webkit_file_chooser_request_get_mime_types_filter(request)) {
    gtk_file_chooser_set_filter(GTK_FILE_CHOOSER(dialog), filter);
  }
  engine.popover().pin();
  auto choice =
      std::make_unique<FileChoice>(FileChoice{engine, GObjectPtr<WebKitFileChooserRequest>::retain(request)});
  g_signal_connect(dialog, "response", G_CALLBACK(fileChosen), choice.release());
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(dialog));
  return TRUE;
}

/// What a page wants, as the word under which the answer is kept and as the user reads it.
struct Wish {
  const char* kind = nullptr;
  const char* text = nullptr;
};

Wish wishOf(WebKitPermissionRequest* request) {
  if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request)) return {"location", "know your location"};
  if (WEBKIT_IS_NOTIFICATION_PERMISSION_REQUEST(request)) return {"notifications", "show notifications"};
  if (WEBKIT_IS_CLIPBOARD_PERMISSION_REQUEST(request)) return {"clipboard", "read the clipboard"};
  if (WEBKIT_IS_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request)) {
    return {"website-data", "use the data that it keeps while you visit other sites"};
  }
  if (WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request)) {
    auto* media = WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request);
    if (webkit_user_media_permission_is_for_display_device(media)) return {"screen", "see your screen"};
    const bool wantsCamera = webkit_user_media_permission_is_for_video_device(media);
    const bool wantsMicrophone = webkit_user_media_permission_is_for_audio_device(media);
    if (wantsCamera && wantsMicrophone)
      return {"camera-and-microphone", "use your camera and your microphone"};
    return wantsCamera ? Wish{"camera", "use your camera"} : Wish{"microphone", "use your microphone"};
  }
  return {};
}

void answer(WebKitPermissionRequest* request, bool isAllowed) {
  if (isAllowed) {
    webkit_permission_request_allow(request);
  } else {
    webkit_permission_request_deny(request);
  }
}

struct Question {
  WebEngine& engine;
  GObjectPtr<WebKitPermissionRequest> request;
  std::string site;
  std::string kind;
};

gboolean permissionRequested(WebKitWebView* view, WebKitPermissionRequest* request, gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  const auto site = originOf(view);
  if (WEBKIT_IS_DEVICE_INFO_PERMISSION_REQUEST(request)) {
    // The names of devices are for those that may use them.
    const bool mayUse = engine.permissions().answer(site, "camera").value_or(false) ||
                        engine.permissions().answer(site, "microphone").value_or(false) ||
                        engine.permissions().answer(site, "camera-and-microphone").value_or(false);
    answer(request, mayUse);
    return TRUE;
  }
  if (WEBKIT_IS_POINTER_LOCK_PERMISSION_REQUEST(request)) {
    answer(request, true);
    return TRUE;
  }
  const auto wish = wishOf(request);
  if (wish.kind == nullptr) {
    answer(request, false);
    return TRUE;
  }
  if (const auto known = engine.permissions().answer(site, wish.kind)) {
    answer(request, *known);
    return TRUE;
  }
  auto* root = gtk_widget_get_root(GTK_WIDGET(view));
  const std::string heading = "Allow this site to " + std::string(wish.text) + "?";
  GtkWidget* dialog =
      adw_message_dialog_new(GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr, heading.c_str(),
                             (site + "\n\nVelkin will remember your answer for this site.").c_str());
  adw_message_dialog_add_responses(ADW_MESSAGE_DIALOG(dialog), "block", "Block", "allow", "Allow", nullptr);
  adw_message_dialog_set_response_appearance(ADW_MESSAGE_DIALOG(dialog), "allow", ADW_RESPONSE_SUGGESTED);
  adw_message_dialog_set_default_response(ADW_MESSAGE_DIALOG(dialog), "block");
  adw_message_dialog_set_close_response(ADW_MESSAGE_DIALOG(dialog), "later");
  engine.popover().pin();
  auto question = std::make_unique<Question>(
      Question{engine, GObjectPtr<WebKitPermissionRequest>::retain(request), site, wish.kind});
  g_signal_connect_data(
      dialog, "response", G_CALLBACK(+[](AdwMessageDialog*, const char* response, gpointer asked) {
        const auto& q = *static_cast<Question*>(asked);
        const std::string_view chosen = response;
        answer(q.request.get(), chosen == "allow");
        // Closing the question is no answer to remember.
        if (chosen != "later") q.engine.permissions().remember(q.site, q.kind, chosen == "allow");
        q.engine.popover().unpin();
      }),
      question.release(),
      [](gpointer asked, GClosure*) { std::default_delete<Question>()(static_cast<Question*>(asked)); },
      GConnectFlags(0));
  gtk_window_present(GTK_WINDOW(dialog));
  return TRUE;
}

gboolean permissionStateQueried(WebKitWebView*, WebKitPermissionStateQuery* query, gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  std::string kind = webkit_permission_state_query_get_name(query);
  if (kind == "geolocation") kind = "location";
  if (kind == "clipboard-read") kind = "clipboard";
  const GStringPtr site(
      webkit_security_origin_to_string(webkit_permission_state_query_get_security_origin(query)));
  const auto known = engine.permissions().answer(site ? site.get() : "", kind);
  auto state = WEBKIT_PERMISSION_STATE_PROMPT;
  if (known) state = *known ? WEBKIT_PERMISSION_STATE_GRANTED : WEBKIT_PERMISSION_STATE_DENIED;
  webkit_permission_state_query_finish(query, state);
  return TRUE;
}

}  // namespace

void teachManners(WebKitWebView* view, WebEngine& engine) {
  g_signal_connect(view, "decide-policy", G_CALLBACK(decidePolicy), nullptr);
  g_signal_connect(view, "create", G_CALLBACK(create), &engine);
  g_signal_connect(view, "run-file-chooser", G_CALLBACK(runFileChooser), &engine);
  g_signal_connect(view, "permission-request", G_CALLBACK(permissionRequested), &engine);
  g_signal_connect(view, "query-permission-state", G_CALLBACK(permissionStateQueried), &engine);
}

}  // namespace platform
