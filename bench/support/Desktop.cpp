#include "Desktop.h"

#include "Timing.h"

#include <array>
#include <cstdio>

namespace bench {

namespace {

constexpr std::array<unsigned long, ServicePages::count> colours = {0x1234ab, 0xab3412, 0x12ab34,
                                                                    0xabab12, 0x7812ab, 0xc85a96};

/// Seconds: the end-to-end tests may have the addresses.
constexpr double patience = 900;

std::string pageOf(int service) {
  std::array<char, 8> colour{};
  std::snprintf(colour.data(), colour.size(), "#%06lx", colours.at(static_cast<std::size_t>(service)));
  return R"(<!DOCTYPE html><html><body style="margin:0;background:)" + std::string(colour.data()) +
         R"("><p>x</p></body></html>)";
}

std::string hostOf(int service) { return "127.83.0." + std::to_string(service + 1); }

void answer(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer) {
  GSocketAddress* local = soup_server_message_get_local_address(message);
  char* host = g_inet_address_to_string(g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(local)));
  for (int i = 0; i < ServicePages::count; ++i) {
    if (host != hostOf(i)) continue;
    const auto page = pageOf(i);
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, "text/html", SOUP_MEMORY_COPY, page.data(), page.size());
  }
  g_free(host);
}

}  // namespace

GDBusConnection* sessionBus() {
  static GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (bus == nullptr) refuse("needs a session bus");
  return bus;
}

void callMethod(const std::string& name, const char* path, const char* interface, const char* method,
                GVariant* arguments) {
  g_dbus_connection_call(sessionBus(), name.c_str(), path, interface, method, arguments, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
  g_dbus_connection_flush_sync(sessionBus(), nullptr, nullptr);
}

void clickIcon(pid_t velkin) {
  callMethod("org.kde.StatusNotifierItem-" + std::to_string(velkin) + "-1", "/StatusNotifierItem",
             "org.kde.StatusNotifierItem", "Activate", g_variant_new("(ii)", 640, 14));
}

ServicePages::ServicePages() : server_(soup_server_new(nullptr, nullptr)) {
  soup_server_add_handler(server_, nullptr, answer, nullptr, nullptr);
  for (int i = 0; i < count; ++i) {
    GSocketAddress* address = g_inet_socket_address_new_from_string(hostOf(i).c_str(), 8471);
    const auto listens = [&] {
      return soup_server_listen(server_, address, SoupServerListenOptions(0), nullptr) != FALSE;
    };
    if (!listens()) {
      std::fprintf(stderr, "bench: the services' addresses are taken; waiting for the other run to end\n");
      if (!waitFor(listens, patience)) refuse("the services' addresses stay taken");
    }
    g_object_unref(address);
  }
}

ServicePages::~ServicePages() { g_object_unref(server_); }

std::string ServicePages::address(Service service) {
  // Every path has the page.
  return "http://" + hostOf(service) + ":8471/";
}

unsigned long ServicePages::colour(Service service) { return colours.at(service); }

}  // namespace bench
