#include "Platform/Gtk/PageNotices.h"

#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/URL.h"

namespace platform {

namespace {

std::string escaped(const std::string& text) {
  const GStringPtr markup(g_markup_escape_text(text.c_str(), -1));
  return markup.get();
}

std::string hostOf(const std::string& address) {
  const auto url = URL::parseReported(address);
  return url ? url->host().value_or(address) : address;
}

/// `body` is HTML.
std::string notice(const std::string& title, const std::string& body) {
  return R"(<!DOCTYPE html><html lang="en"><head><meta charset="utf-8"><title>)" + escaped(title) +
         R"(</title><style>
:root{color-scheme:light dark}
body{font:15px/1.5 system-ui,sans-serif;display:flex;align-items:center;justify-content:center;min-height:90vh;margin:0}
main{max-width:24em;padding:2em;text-align:center}
h1{font-size:1.25em;margin:0 0 .5em;overflow-wrap:anywhere}
p{opacity:.8;margin:0 0 1em;overflow-wrap:anywhere}
a{display:inline-block;margin:.5em 0 1em;padding:.5em 1.5em;border-radius:8px;background:#1c71d8;color:#fff;text-decoration:none;font-weight:600}
a:focus-visible{outline:3px solid #1c71d8;outline-offset:3px}
small{display:block;opacity:.75}
</style></head><body><main role="alert"><h1>)" +
         escaped(title) + "</h1>" + body + "</main></body></html>";
}

std::string button(const std::string& address, const char* title) {
  return R"(<a id="again" href=")" + escaped(address) + R"(" role="button">)" + title + "</a>";
}

std::string unreachable(const std::string& address, const std::string& reason, const char* outlook) {
  return notice("“" + hostOf(address) + "” can’t be reached",
                "<p>" + reason + "</p>" + button(address, "Try Again") + "<small>" + outlook + "</small>");
}

constexpr const char* triesByItself = "Velkin tries again by itself when the network is back.";

}  // namespace

std::string crashNotice(const std::string& address) {
  return notice(
      "This page stopped working",
      address.empty() ? std::string() : "<p>" + escaped(address) + "</p>" + button(address, "Reload"));
}

std::string silenceNotice(const std::string& address) {
  return unreachable(address, "The server didn’t answer within a minute.", triesByItself);
}

std::string failureNotice(const std::string& address, const GError& error, bool isOffline) {
  if (error.domain == G_TLS_ERROR) {
    return unreachable(
        address,
        "The connection isn’t safe: nobody vouches for the server’s certificate. Somebody may be "
        "listening, or the computer’s clock may be wrong.",
        "Nothing was sent.");
  }
  if (isOffline) return unreachable(address, "This computer isn’t connected to a network.", triesByItself);
  if (error.domain == G_RESOLVER_ERROR || g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_HOST_NOT_FOUND)) {
    return unreachable(address,
                       "No server of this name was found. The network may not be up yet, or the address may "
                       "have a mistake in it.",
                       triesByItself);
  }
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED))
    return unreachable(address, "The server refuses the connection.", triesByItself);
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_HOST_UNREACHABLE) ||
      g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_NETWORK_UNREACHABLE)) {
    return unreachable(address, "No way leads to the server from this network.", triesByItself);
  }
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
    return unreachable(address, "The server took too long to answer.", triesByItself);
  return unreachable(address, "The connection failed: " + escaped(error.message), triesByItself);
}

}  // namespace platform
