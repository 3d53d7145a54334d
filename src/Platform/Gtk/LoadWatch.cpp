#include "Platform/Gtk/LoadWatch.h"

#include "Platform/DebugLog.h"
#include "Platform/Gtk/PageNotices.h"
#include "Platform/LogText.h"
#include "Platform/Platform.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

/// The user or a script gave it up, or it became something else, such as a download.
bool isNoFailure(const GError& error) {
  return g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
         g_error_matches(&error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) ||
         error.domain == WEBKIT_MEDIA_ERROR;
}

}  // namespace

LoadWatch::LoadWatch(WebKitWebView* view, Limits limits) : view_(view), limits_(limits) {
  g_signal_connect(view_, "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     static_cast<LoadWatch*>(self)->changed(event);
                   }),
                   this);
  g_signal_connect(view_, "load-failed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char* uri, GError* error,
                                  gpointer self) -> gboolean {
                     return static_cast<LoadWatch*>(self)->failed(uri, *error);
                   }),
                   this);
  g_signal_connect_swapped(view_, "map", G_CALLBACK(+[](LoadWatch* self) { self->hope(); }), this);
  g_signal_connect(g_network_monitor_get_default(), "network-changed",
                   G_CALLBACK(+[](GNetworkMonitor*, gboolean isAvailable, gpointer self) {
                     if (isAvailable) static_cast<LoadWatch*>(self)->hope();
                   }),
                   this);
}

LoadWatch::~LoadWatch() {
  g_signal_handlers_disconnect_by_data(view_, this);
  g_signal_handlers_disconnect_by_data(g_network_monitor_get_default(), this);
}

void LoadWatch::changed(WebKitLoadEvent event) {
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      if (isShowingNotice_) return;
      nextTry_.reset();
      failedAddress_.clear();
      lastTry_ = Platform::current().now();
      answerTimer_ = DispatchQueue::main().timer(limits_.answer, [this] { isLate(); });
      return;
    case WEBKIT_LOAD_COMMITTED:
      answerTimer_.reset();
      // The notice's own end of loading comes behind this.
      if (!std::exchange(isShowingNotice_, false)) failedAddress_.clear();
      return;
    default:
      return;
  }
}

void LoadWatch::isLate() {
  isTooLate_ = true;
  webkit_web_view_stop_loading(view_);
}

bool LoadWatch::failed(const char* address, const GError& error) {
  answerTimer_.reset();
  const std::string failed = address != nullptr ? address : "";
  if (std::exchange(isTooLate_, false)) {
    debugLog("LoadWatch", "failed(_:_:)", addressForLog(failed) + " doesn't answer");
    if (didFail) didFail(failed, error);
    show(failed, silenceNotice(failed));
    return true;
  }
  debugLog("LoadWatch", "failed(_:_:)", addressForLog(failed) + ": " + forLog(error.message));
  if (didFail) didFail(failed, error);
  if (isNoFailure(error)) return true;
  const bool isOffline = g_network_monitor_get_network_available(g_network_monitor_get_default()) == FALSE;
  show(failed, failureNotice(failed, error, isOffline));
  return true;
}

void LoadWatch::show(const std::string& address, const std::string& notice) {
  failedAddress_ = address;
  isShowingNotice_ = true;
  webkit_web_view_load_alternate_html(view_, notice.c_str(), address.c_str(), nullptr);
}

void LoadWatch::hope() {
  if (failedAddress_.empty() || nextTry_) return;
  const double wait = std::max(lastTry_ + limits_.betweenTries - Platform::current().now(), 0.0);
  nextTry_ = DispatchQueue::main().timer(std::min(wait, limits_.betweenTries), [this] { tryAgain(); });
}

void LoadWatch::tryAgain() {
  const auto address = failedAddress_;
  nextTry_.reset();
  if (!address.empty()) webkit_web_view_load_uri(view_, address.c_str());
}

}  // namespace platform
