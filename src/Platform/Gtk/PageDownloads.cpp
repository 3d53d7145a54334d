#include "Platform/Gtk/PageDownloads.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/PermissionWishes.h"
#include "Platform/Gtk/SiteQuestion.h"

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
      : view_(view),
        engine_(engine),
        site_(originOf(view)),
        pin_(engine.popover().keepOpen()),
        question_(windowOf(view), "Allow this site to download several files?", site_,
                  [this](SiteQuestion::Answer answer) { answered(answer); }) {}

  ~DownloadQuestion() override {
    for (const auto& held : held_) webkit_download_cancel(held.download.get());
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

  void answered(SiteQuestion::Answer answer) {
    const bool isAllowed = answer == SiteQuestion::Answer::allow;
    if (isAllowed) {
      for (const auto& held : std::exchange(held_, {})) held.start();
    }
    auto& state = PageState::of(view_);
    if (answer != SiteQuestion::Answer::later) {
      engine_.permissions().remember(site_, std::string(downloadsKind), isAllowed);
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
  SiteQuestion question_;
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
