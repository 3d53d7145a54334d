#include "Platform/Gtk/PageState.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkKeyEvents.h"

#include <algorithm>
#include <string>
#include <utility>

namespace platform {

namespace {

/// Behind the longest time for which the engine goes on taking what a script does for the user's doing.
constexpr std::int64_t gestureMemory = std::int64_t{10} * G_USEC_PER_SEC;

}  // namespace

PageState& PageState::of(WebKitWebView* view) {
  constexpr const char* key = "velkin-page-state";
  if (auto* known = static_cast<PageState*>(g_object_get_data(G_OBJECT(view), key))) return *known;
  auto* fresh = std::unique_ptr<PageState>(new PageState(view)).release();
  g_object_set_data_full(G_OBJECT(view), key, fresh, [](gpointer state) {
    std::default_delete<PageState>()(static_cast<PageState*>(state));
  });
  return *fresh;
}

PageState::PageState(WebKitWebView* view) {
  GtkEventController* presses = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(presses, GTK_PHASE_CAPTURE);
  g_signal_connect(presses, "event",
                   G_CALLBACK(+[](GtkEventControllerLegacy*, GdkEvent* event, gpointer self) -> gboolean {
                     static_cast<PageState*>(self)->pressed(event);
                     return FALSE;
                   }),
                   this);
  gtk_widget_add_controller(GTK_WIDGET(view), presses);
  g_signal_connect(view, "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     if (event == WEBKIT_LOAD_COMMITTED) static_cast<PageState*>(self)->left();
                   }),
                   this);
  g_signal_connect_swapped(view, "web-process-terminated", G_CALLBACK(+[](PageState* self) { self->left(); }),
                           this);
  g_signal_connect_swapped(view, "destroy", G_CALLBACK(+[](PageState* self) { self->left(); }), this);
}

PageState::~PageState() {
  if (lastPress_ != nullptr) gdk_event_unref(lastPress_);
}

void PageState::pressed(GdkEvent* event) {
  const auto type = gdk_event_get_event_type(event);
  if (type != GDK_BUTTON_PRESS && type != GDK_KEY_PRESS && type != GDK_TOUCH_BEGIN) return;
  // The engine sends a press that the page had no use for round a second time.
  if (event == lastPress_ || (type == GDK_KEY_PRESS && isKeyRepeating())) return;
  if (lastPress_ != nullptr) gdk_event_unref(lastPress_);
  lastPress_ = gdk_event_ref(event);
  canOpen_ = true;
  canDownload_ = true;
}

bool PageState::mayOpen(bool isUserGesture) {
  const auto now = g_get_monotonic_time();
  const bool isLongAgo = lastOpening_ == 0 || now - lastOpening_ > gestureMemory;
  if (!std::exchange(canOpen_, false) && !(isUserGesture && isLongAgo)) return false;
  lastOpening_ = now;
  return true;
}

bool PageState::mayDownload() {
  return std::exchange(canDownload_, false) || !std::exchange(hasDownloadedUnasked_, true);
}

void PageState::add(std::unique_ptr<PageDialogue> dialogue) { dialogues_.push_back(std::move(dialogue)); }

void PageState::end(PageDialogue* dialogue) {
  const auto found = std::find_if(dialogues_.begin(), dialogues_.end(),
                                  [&](const auto& known) { return known.get() == dialogue; });
  if (found == dialogues_.end()) return;
  // Out of the list first: its end may lead to another question.
  const auto ending = std::move(*found);
  dialogues_.erase(found);
}

void PageState::left() {
  refusals = 0;
  refusesDownloads = false;
  hasToldOfOpenings = false;
  hasDownloadedUnasked_ = false;
  const auto ending = std::exchange(dialogues_, {});
}

GtkWindow* windowOf(WebKitWebView* view) {
  auto* root = gtk_widget_get_root(GTK_WIDGET(view));
  return GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr;
}

std::string originOf(WebKitWebView* view) {
  const char* uri = webkit_web_view_get_uri(view);
  auto* origin = webkit_security_origin_new_for_uri(uri != nullptr ? uri : "about:blank");
  const GStringPtr text(webkit_security_origin_to_string(origin));
  webkit_security_origin_unref(origin);
  return text ? text.get() : "";
}

}  // namespace platform
