#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace platform {

/// A dialogue that a page asked for. Its destruction closes it and gives the page the answer "no", if it has
/// none yet.
class PageDialogue {
 public:
  PageDialogue() = default;
  virtual ~PageDialogue() = default;
  PageDialogue(const PageDialogue&) = delete;
  PageDialogue& operator=(const PageDialogue&) = delete;
};

/// What the page that a view shows at present has done and been allowed: it begins anew with each page. Made
/// with the first question for it, by which time the view must be all there. Main thread.
class PageState {
 public:
  static PageState& of(WebKitWebView* view);
  ~PageState();
  PageState(const PageState&) = delete;
  PageState& operator=(const PageState&) = delete;

  /// One window or browser for each press of a button or key: true for the first that asks. `isUserGesture`
  /// is what the engine takes for one; a screen reader's come without a press.
  bool mayOpen(bool isUserGesture);
  /// One download for each press, and one besides in each page.
  bool mayDownload();

  /// Refused permissions in this page.
  int refusals = 0;
  /// The user has closed the question whether this page may download on.
  bool refusesDownloads = false;
  /// False until a refused opening was told to the user.
  bool hasToldOfOpenings = false;

  /// Keeps a dialogue until `end`, or until the page is left, its process dies or the view goes.
  void add(std::unique_ptr<PageDialogue> dialogue);
  void end(PageDialogue* dialogue);
  /// The one of this kind that is open; nullptr if none is.
  template <class Dialogue>
  Dialogue* open() const {
    for (const auto& dialogue : dialogues_) {
      if (auto* found = dynamic_cast<Dialogue*>(dialogue.get())) return found;
    }
    return nullptr;
  }

 private:
  explicit PageState(WebKitWebView* view);
  void pressed(GdkEvent* event);
  void left();

  std::vector<std::unique_ptr<PageDialogue>> dialogues_;
  GdkEvent* lastPress_ = nullptr;
  bool canOpen_ = false;
  bool canDownload_ = false;
  bool hasDownloadedUnasked_ = false;
  std::int64_t lastOpening_ = 0;
};

/// The window that a view is in; nullptr if it is in none.
GtkWindow* windowOf(WebKitWebView* view);

/// The origin of the view's page ("https://example.org"), as which permissions are kept.
std::string originOf(WebKitWebView* view);

}  // namespace platform
