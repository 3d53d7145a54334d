#include "Platform/Gtk/PagePermissions.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/PermissionWishes.h"
#include "Platform/Gtk/SiteQuestion.h"
#include "Platform/Gtk/Toolkit.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <adwaita.h>

namespace platform {

namespace {

constexpr int mostRefusals = 2;
/// A page's frames may ask for the same again and again while its question stands.
constexpr std::size_t mostWaiting = 100;

void answer(WebKitPermissionRequest* request, bool isAllowed) {
  if (isAllowed) {
    webkit_permission_request_allow(request);
  } else {
    webkit_permission_request_deny(request);
  }
}

/// The questions of one page, one after the other.
class PermissionQuestions : public PageDialogue {
 public:
  PermissionQuestions(WebKitWebView* view, WebEngine& engine)
      : view_(view), engine_(engine), site_(originOf(view)), pin_(engine.popover().keepOpen()) {}

  ~PermissionQuestions() override {
    for (const auto& asked : asked_) answerAll(asked, false);
  }

  void ask(WebKitPermissionRequest* request, const PermissionWish& wish) {
    auto wanted = GObjectPtr<WebKitPermissionRequest>::retain(request);
    for (auto& asked : asked_) {
      if (asked.wish.kind != wish.kind) continue;
      if (asked.requests.size() < mostWaiting) {
        asked.requests.push_back(std::move(wanted));
      } else {
        answer(request, false);
      }
      return;
    }
    asked_.push_back({wish, {std::move(wanted)}});
    if (!question_) showNext();
  }

 private:
  struct Asked {
    PermissionWish wish;
    std::vector<GObjectPtr<WebKitPermissionRequest>> requests;
  };

  static void answerAll(const Asked& asked, bool isAllowed) {
    for (const auto& request : asked.requests) answer(request.get(), isAllowed);
  }

  void showNext() {
    question_ = std::make_unique<SiteQuestion>(
        windowOf(view_), "Allow this site to " + std::string(asked_.front().wish.text) + "?", site_,
        [this](SiteQuestion::Answer answer) { answered(answer); });
  }

  void answered(SiteQuestion::Answer answer) {
    question_.reset();
    const auto asked = std::move(asked_.front());
    asked_.pop_front();
    const bool isAllowed = answer == SiteQuestion::Answer::allow;
    // Closing the question is no answer to remember.
    if (answer != SiteQuestion::Answer::later)
      engine_.permissions().remember(site_, std::string(asked.wish.kind), isAllowed);
    answerAll(asked, isAllowed);
    auto& state = PageState::of(view_);
    if (!isAllowed && ++state.refusals >= mostRefusals) {
      for (const auto& other : std::exchange(asked_, {})) answerAll(other, false);
    }
    if (asked_.empty()) {
      state.end(this);
    } else {
      showNext();
    }
  }

  WebKitWebView* view_;
  WebEngine& engine_;
  std::string site_;
  std::deque<Asked> asked_;
  std::unique_ptr<SiteQuestion> question_;
  std::shared_ptr<void> pin_;
};

/// The names of devices are for those that may use them.
bool mayUseDevices(const SitePermissions& permissions, const std::string& site) {
  for (const auto* kind : {"camera", "microphone", "camera-and-microphone"}) {
    if (permissions.answer(site, kind).value_or(false)) return true;
  }
  return false;
}

gboolean permissionRequested(WebKitWebView* view, WebKitPermissionRequest* request, gpointer data) {
  auto& engine = *static_cast<WebEngine*>(data);
  const auto site = originOf(view);
  if (WEBKIT_IS_DEVICE_INFO_PERMISSION_REQUEST(request)) {
    answer(request, mayUseDevices(engine.permissions(), site));
    return TRUE;
  }
  if (WEBKIT_IS_POINTER_LOCK_PERMISSION_REQUEST(request)) {
    answer(request, true);
    return TRUE;
  }
  const auto wish = wishOf(request);
  auto& state = PageState::of(view);
  const auto known =
      wish ? engine.permissions().answer(site, std::string(wish->kind)) : std::optional<bool>(false);
  if (known || state.refusals >= mostRefusals) {
    answer(request, known.value_or(false));
    return TRUE;
  }
  auto* questions = state.open<PermissionQuestions>();
  if (questions == nullptr) {
    auto fresh = std::make_unique<PermissionQuestions>(view, engine);
    questions = fresh.get();
    state.add(std::move(fresh));
  }
  questions->ask(request, *wish);
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

/// The engine learns of notifications only at its start: what was taken back since holds here.
gboolean notificationShown(WebKitWebView* view, WebKitNotification*, gpointer data) {
  return !static_cast<WebEngine*>(data)
              ->permissions()
              .answer(originOf(view), "notifications")
              .value_or(false);
}

/// What the rows of the permissions' page offer.
enum class Choice : guint { ask, allow, block };

class PermissionsPage : public PageDialogue {
 public:
  PermissionsPage(WebKitWebView* view, WebEngine& engine)
      : view_(view), engine_(engine), site_(originOf(view)), pin_(engine.popover().keepOpen()) {
    window_ = toolkit::makeSettingsWindow(content());
    gtk_window_set_title(window_, "Permissions");
    gtk_window_set_default_size(window_, 440, 360);
    gtk_window_set_modal(window_, TRUE);
    if (auto* parent = windowOf(view)) gtk_window_set_transient_for(window_, parent);
    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect(keys, "key-pressed",
                     G_CALLBACK(+[](GtkEventControllerKey*, guint keyval, guint, GdkModifierType,
                                    gpointer window) -> gboolean {
                       if (keyval != GDK_KEY_Escape) return FALSE;
                       gtk_window_close(GTK_WINDOW(window));
                       return TRUE;
                     }),
                     window_);
    gtk_widget_add_controller(GTK_WIDGET(window_), keys);
    g_signal_connect_swapped(window_, "destroy", G_CALLBACK(+[](PermissionsPage* self) {
                               g_signal_handlers_disconnect_by_data(self->window_, self);
                               self->window_ = nullptr;
                               PageState::of(self->view_).end(self);
                             }),
                             this);
    gtk_window_present(window_);
  }

  ~PermissionsPage() override {
    if (window_ == nullptr) return;
    g_signal_handlers_disconnect_by_data(window_, this);
    gtk_window_destroy(window_);
  }

  void present() { gtk_window_present(window_); }

 private:
  struct Row {
    PermissionsPage* page;
    std::string kind;
  };

  GtkWidget* content() {
    GtkWidget* page = adw_preferences_page_new();
    GtkWidget* group = adw_preferences_group_new();
    adw_preferences_group_set_title(ADW_PREFERENCES_GROUP(group), site_.c_str());
    bool isEmpty = true;
    for (const auto& wish : permissionWishes()) {
      const auto known = engine_.permissions().answer(site_, std::string(wish.kind));
      if (!known) continue;
      isEmpty = false;
      adw_preferences_group_add(ADW_PREFERENCES_GROUP(group), row(wish, *known));
    }
    adw_preferences_group_set_description(
        ADW_PREFERENCES_GROUP(group),
        isEmpty ? "You have not allowed or refused anything to this site yet."
                : "What you allowed and refused to this site. A change holds at once.");
    adw_preferences_page_add(ADW_PREFERENCES_PAGE(page), ADW_PREFERENCES_GROUP(group));
    return page;
  }

  GtkWidget* row(const PermissionWish& wish, bool isAllowed) {
    GtkWidget* widget = adw_combo_row_new();
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(widget), std::string(wish.title).c_str());
    constexpr const char* choices[] = {"Ask", "Allow", "Block", nullptr};
    const auto model = GObjectPtr<GtkStringList>::adopt(gtk_string_list_new(choices));
    adw_combo_row_set_model(ADW_COMBO_ROW(widget), G_LIST_MODEL(model.get()));
    adw_combo_row_set_selected(ADW_COMBO_ROW(widget),
                               static_cast<guint>(isAllowed ? Choice::allow : Choice::block));
    g_signal_connect_data(
        widget, "notify::selected", G_CALLBACK(+[](AdwComboRow* changed, GParamSpec*, gpointer data) {
          const auto& self = *static_cast<Row*>(data);
          self.page->choose(self.kind, Choice(adw_combo_row_get_selected(changed)));
        }),
        std::make_unique<Row>(Row{this, std::string(wish.kind)}).release(),
        [](gpointer data, GClosure*) { std::default_delete<Row>()(static_cast<Row*>(data)); },
        GConnectFlags(0));
    return widget;
  }

  void choose(const std::string& kind, Choice choice) {
    if (choice == Choice::ask) {
      engine_.permissions().forget(site_, kind);
    } else {
      engine_.permissions().remember(site_, kind, choice == Choice::allow);
    }
  }

  WebKitWebView* view_;
  WebEngine& engine_;
  std::string site_;
  std::shared_ptr<void> pin_;
  GtkWindow* window_;
};

}  // namespace

void askForPermissions(WebKitWebView* view, WebEngine& engine) {
  g_signal_connect(view, "permission-request", G_CALLBACK(permissionRequested), &engine);
  g_signal_connect(view, "query-permission-state", G_CALLBACK(permissionStateQueried), &engine);
  g_signal_connect(view, "show-notification", G_CALLBACK(notificationShown), &engine);
}

void showPermissions(WebKitWebView* view, WebEngine& engine) {
  auto& state = PageState::of(view);
  if (auto* page = state.open<PermissionsPage>()) {
    page->present();
  } else {
    state.add(std::make_unique<PermissionsPage>(view, engine));
  }
}

}  // namespace platform
