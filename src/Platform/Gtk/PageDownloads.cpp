#include "Platform/Gtk/PageDownloads.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/PermissionWishes.h"
#include "Platform/Gtk/Toolkit.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtk/gtk.h>

namespace platform {

namespace {

class DownloadQuestion : public PageDialogue {
 public:
  DownloadQuestion(WebKitWebView* view, WebEngine& engine)
      : view_(view), engine_(engine), site_(originOf(view)), pin_(engine.popover().keepOpen()) {
    dialog_ = toolkit::makePageQuestion(
        windowOf(view), {.heading = "Allow this site to download several files?",
                         .body = site_ + "\n\nVelkin will remember your answer for this site.",
                         .responses = {{"block", "Block"}, {"allow", "Allow"}},
                         .suggested = "allow",
                         .byDefault = "block",
                         .byClosing = "later"});
    g_signal_connect(dialog_, "response", G_CALLBACK(+[](GtkWidget*, const char* response, gpointer self) {
                       static_cast<DownloadQuestion*>(self)->answered(response);
                     }),
                     this);
    g_signal_connect_swapped(dialog_, "destroy",
                             G_CALLBACK(+[](DownloadQuestion* self) { self->answered("later"); }), this);
    gtk_window_present(GTK_WINDOW(dialog_));
  }

  ~DownloadQuestion() override {
    for (const auto& held : held_) webkit_download_cancel(held.download.get());
    if (dialog_ == nullptr) return;
    g_signal_handlers_disconnect_by_data(dialog_, this);
    gtk_window_destroy(GTK_WINDOW(dialog_));
  }

  void hold(WebKitDownload* download, std::function<void()> start) {
    constexpr std::size_t mostHeld = 50;
    if (held_.size() < mostHeld) {
      held_.push_back({GObjectPtr<WebKitDownload>::retain(download), std::move(start)});
    } else {
      webkit_download_cancel(download);
    }
  }

 private:
  struct Held {
    GObjectPtr<WebKitDownload> download;
    std::function<void()> start;
  };

  void answered(std::string_view response) {
    g_signal_handlers_disconnect_by_data(dialog_, this);
    dialog_ = nullptr;
    if (response == "allow") {
      for (const auto& held : std::exchange(held_, {})) held.start();
    }
    auto& state = PageState::of(view_);
    if (response != "later") {
      engine_.permissions().remember(site_, std::string(downloadsKind), response == "allow");
    } else {
      // No answer to remember, but one for this page.
      state.refusesDownloads = true;
    }
    state.end(this);
  }

  WebKitWebView* view_;
  WebEngine& engine_;
  std::string site_;
  std::shared_ptr<void> pin_;
  GtkWidget* dialog_;
  std::vector<Held> held_;
};

}  // namespace

void admitDownload(WebKitDownload* download, WebEngine& engine, std::function<void()> start) {
  auto* view = webkit_download_get_web_view(download);
  // What the user asks for in a menu belongs to no page.
  if (view == nullptr) {
    start();
    return;
  }
  auto& state = PageState::of(view);
  const auto known = engine.permissions().answer(originOf(view), std::string(downloadsKind));
  if (state.mayDownload() || known.value_or(false)) {
    start();
  } else if (known || state.refusesDownloads || windowOf(view) == nullptr) {
    webkit_download_cancel(download);
  } else {
    auto* question = state.open<DownloadQuestion>();
    if (question == nullptr) {
      auto fresh = std::make_unique<DownloadQuestion>(view, engine);
      question = fresh.get();
      state.add(std::move(fresh));
    }
    question->hold(download, std::move(start));
  }
}

}  // namespace platform
