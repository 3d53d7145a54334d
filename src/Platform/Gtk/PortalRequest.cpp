#include "Platform/Gtk/PortalRequest.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace platform {

namespace {

/// Lives until the answer, shared by what may bring it.
struct Run : std::enable_shared_from_this<Run> {
  GObjectPtr<GDBusConnection> connection;
  std::string handle;
  guint subscription = 0;
  std::function<void(PortalAnswer)> completion;

  void listen(const std::string& path) {
    stopListening();
    handle = path;
    subscription = g_dbus_connection_signal_subscribe(
        connection.get(), portalName, requestInterface, "Response", path.c_str(), nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE, answered,
        std::make_unique<std::shared_ptr<Run>>(shared_from_this()).release(), [](gpointer data) {
          std::default_delete<std::shared_ptr<Run>>()(static_cast<std::shared_ptr<Run>*>(data));
        });
  }

  void stopListening() {
    if (subscription != 0)
      g_dbus_connection_signal_unsubscribe(connection.get(), std::exchange(subscription, 0));
  }

  void end(PortalAnswer answer) {
    const auto self = shared_from_this();
    stopListening();
    if (const auto done = std::exchange(completion, {})) done(std::move(answer));
  }

  static void answered(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* parameters, gpointer data) {
    const auto run = *static_cast<std::shared_ptr<Run>*>(data);
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})"))) return;
    guint32 code = 0;
    GVariant* results = nullptr;
    g_variant_get(parameters, "(u@a{sv})", &code, &results);
    GVariantPtr owned(results);
    if (code != 0) return run->end(tl::unexpected(std::string("The user or the desktop said no")));
    run->end(std::move(owned));
  }
};

std::string tokenOf() {
  static unsigned count = 0;
  return "velkin" + std::to_string(++count);
}

/// Where the request will be, so that no answer is missed.
std::string expectedHandle(GDBusConnection* connection, const std::string& token) {
  const char* unique = g_dbus_connection_get_unique_name(connection);
  std::string sender = unique != nullptr ? unique + 1 : "";
  std::replace(sender.begin(), sender.end(), '.', '_');
  return std::string(portalPath) + "/request/" + sender + "/" + token;
}

}  // namespace

void callPortal(GDBusConnection* connection, const char* interface, const char* method,
                const std::function<GVariant*(const char* token)>& parameters,
                std::function<void(PortalAnswer)> completion) {
  const auto token = tokenOf();
  const auto run = std::make_shared<Run>();
  run->connection = GObjectPtr<GDBusConnection>::retain(connection);
  run->completion = std::move(completion);
  run->listen(expectedHandle(connection, token));
  g_dbus_connection_call(
      connection, portalName, portalPath, interface, method, parameters(token.c_str()), G_VARIANT_TYPE("(o)"),
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::shared_ptr<Run>> owner(static_cast<std::shared_ptr<Run>*>(data));
        auto& called = **owner;
        GError* raw = nullptr;
        const GVariantPtr reply(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &raw));
        const GErrorPtr error(raw);
        if (error) return called.end(tl::unexpected(std::string(error->message)));
        const char* handle = nullptr;
        g_variant_get(reply.get(), "(&o)", &handle);
        // Old portals choose a path of their own.
        if (called.completion && called.handle != handle) called.listen(handle);
      },
      std::make_unique<std::shared_ptr<Run>>(run).release());
}

}  // namespace platform
