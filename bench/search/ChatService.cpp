#include "ChatService.h"

#include <nlohmann/json.hpp>

namespace bench {

ChatService::ChatService(const std::string& content)
    : body_(nlohmann::json{{"choices", {{{"message", {{"content", content}}}}}}}.dump()),
      context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)) {
  thread_ = std::thread([this] {
    g_main_context_push_thread_default(context_);
    SoupServer* server = soup_server_new(nullptr, nullptr);
    soup_server_add_handler(
        server, nullptr,
        [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
          auto& service = *static_cast<ChatService*>(self);
          soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
          soup_server_message_set_response(message, "application/json", SOUP_MEMORY_STATIC,
                                           service.body_.data(), service.body_.size());
          service.answered_ = Clock::now();
        },
        this, nullptr);
    GSocketAddress* address = g_inet_socket_address_new_from_string("127.83.0.7", 8471);
    listens_ = soup_server_listen(server, address, SoupServerListenOptions(0), nullptr) != FALSE;
    g_object_unref(address);
    g_main_loop_run(loop_);
    g_object_unref(server);
    g_main_context_pop_thread_default(context_);
  });
  if (!waitFor([this] { return listens_.load(); }, 10)) refuse("the chat service's address is taken");
}

ChatService::~ChatService() {
  g_main_loop_quit(loop_);
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

}  // namespace bench
