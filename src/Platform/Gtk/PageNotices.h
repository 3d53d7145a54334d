#pragma once

#include <string>

#include <gio/gio.h>

namespace platform {

// What stands in the place of a page. Each is a whole HTML document without scripts.

/// A page whose process died too often. Without an address there is nothing to reload.
std::string crashNotice(const std::string& address);
/// A page that can't be loaded: what happened, in words, where, and a way to try again. `isOffline`: there is
/// no network at all.
std::string failureNotice(const std::string& address, const GError& error, bool isOffline);
/// A page that hasn't begun to come for as long as is waited.
std::string silenceNotice(const std::string& address);

}  // namespace platform
