#pragma once

#include "Platform/Gtk/GObjectPtr.h"

#include <functional>
#include <string>

#include <gio/gio.h>
#include <tl/expected.hpp>

namespace platform {

/// Where the desktop's portal stands on the session's bus.
inline constexpr const char* portalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* requestInterface = "org.freedesktop.portal.Request";

/// The results of a portal's answer (a{sv}), or why there are none: the portal's own words, or that the user
/// said no.
using PortalAnswer = tl::expected<GVariantPtr, std::string>;

/// Calls a method of the desktop's portal that answers by a request's signal. `parameters` is given the token
/// that goes into the options as "handle_token". The completion comes once, and never in the same turn.
void callPortal(GDBusConnection* connection, const char* interface, const char* method,
                const std::function<GVariant*(const char* token)>& parameters,
                std::function<void(PortalAnswer)> completion);

}  // namespace platform
