#pragma once

#include "Platform/SwayFrames.h"
#include "unit/TemporaryFolder.h"

#include <algorithm>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include <glib-unix.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

/// Listens on a socket as sway does, in the test's own main loop.
class FakeSway {
 public:
  /// The bytes that a message is answered with.
  using Answer = std::function<std::string(const SwayMessage&)>;

  explicit FakeSway(Answer answer) : answer_(std::move(answer)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path().copy(address.sun_path, sizeof address.sun_path - 1);
    listener_ = socket(AF_UNIX, SOCK_STREAM, 0);
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        listen(listener_, 8) == 0)
      sources_.push_back(g_unix_fd_add(listener_, G_IO_IN, onConnection, this));
  }
  ~FakeSway() {
    for (const auto source : sources_) g_source_remove(source);
    for (const auto& client : clients_) close(client.socket);
    close(listener_);
  }
  FakeSway(const FakeSway&) = delete;
  FakeSway& operator=(const FakeSway&) = delete;

  std::string path() const { return (folder_.path() / "sway").string(); }
  /// All that it was sent.
  const std::vector<SwayMessage>& heard() const { return heard_; }
  /// The commands among that.
  std::vector<std::string> commands() const {
    std::vector<std::string> texts;
    for (const auto& message : heard_) {
      if (message.type == SwayMessage::Type::runCommand) texts.push_back(message.text);
    }
    return texts;
  }

 private:
  struct Client {
    FakeSway* server;
    int socket;
    SwayFrames frames;
  };

  static gboolean onConnection(gint, GIOCondition, gpointer self) {
    auto& server = *static_cast<FakeSway*>(self);
    server.clients_.push_back({&server, accept(server.listener_, nullptr, nullptr), {}});
    auto& client = server.clients_.back();
    server.sources_.push_back(g_unix_fd_add(client.socket, G_IO_IN, onBytes, &client));
    return G_SOURCE_CONTINUE;
  }

  static gboolean onBytes(gint, GIOCondition, gpointer data) {
    auto& client = *static_cast<Client*>(data);
    char bytes[4096];
    const auto count = read(client.socket, bytes, sizeof bytes);
    client.frames.add({bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
    while (auto message = client.frames.next()) {
      client.server->heard_.push_back(*message);
      const auto answer = client.server->answer_(*message);
      // Nobody may be there any more, and nobody in this thread reads while it is sent.
      if (send(client.socket, answer.data(), answer.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) break;
    }
    if (count > 0) return G_SOURCE_CONTINUE;
    // Its source ends with this.
    std::erase(client.server->sources_, g_source_get_id(g_main_current_source()));
    return G_SOURCE_REMOVE;
  }

  velkin::TemporaryFolder folder_;
  Answer answer_;
  int listener_ = -1;
  std::list<Client> clients_;
  std::vector<guint> sources_;
  std::vector<SwayMessage> heard_;
};

}  // namespace platform
