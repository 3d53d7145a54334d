#pragma once

#include "Platform/DispatchQueue.h"

#include <functional>
#include <memory>
#include <string>

#include <webkit/webkit.h>

namespace platform {

/// Watches over the loading of a view's pages: one that can't be had, or doesn't begin to come in time, is
/// replaced by a notice that says so, and tried again when there is hope. Ends before the view. Main thread.
class LoadWatch {
 public:
  /// In seconds.
  struct Limits {
    /// From the request to the page's first bytes.
    double answer = 60;
    /// Between two tries that nobody asked for.
    double betweenTries = 10;
  };

  explicit LoadWatch(WebKitWebView* view) : LoadWatch(view, Limits()) {}
  LoadWatch(WebKitWebView* view, Limits limits);
  ~LoadWatch();
  LoadWatch(const LoadWatch&) = delete;
  LoadWatch& operator=(const LoadWatch&) = delete;

  /// Told of every failure before the notice is shown.
  std::function<void(const std::string& address, const GError& error)> didFail;

 private:
  void changed(WebKitLoadEvent event);
  bool failed(const char* address, const GError& error);
  void isLate();
  void show(const std::string& address, const std::string& notice);
  void hope();
  void tryAgain();

  WebKitWebView* view_;
  Limits limits_;
  std::unique_ptr<Timer> answerTimer_;
  std::unique_ptr<Timer> nextTry_;
  /// The address of the page that the notice stands for; empty while there is none.
  std::string failedAddress_;
  double lastTry_ = 0;
  bool isShowingNotice_ = false;
  bool isTooLate_ = false;
};

}  // namespace platform
