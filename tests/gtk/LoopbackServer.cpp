#include "gtk/LoopbackServer.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in place = {};
  place.sin_family = AF_INET;
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::bind(listener_, reinterpret_cast<sockaddr*>(&place), sizeof(place)) != 0) std::abort();
  ::listen(listener_, 16);
  socklen_t size = sizeof(place);
  ::getsockname(listener_, reinterpret_cast<sockaddr*>(&place), &size);
  port_ = ntohs(place.sin_port);
  thread_ = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  for (auto& connection : connections_) connection.join();
  ::close(listener_);
}

void LoopbackServer::serve() {
  for (;;) {
    const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    {
      const std::lock_guard lock(mutex_);
      ++accepted_;
    }
    connections_.emplace_back([this, connection] {
      const auto request = readRequest(connection);
      if (!request.empty()) {
        {
          const std::lock_guard lock(mutex_);
          requests_.push_back(request);
        }
        handler_(connection, request);
      }
      ::close(connection);
    });
  }
}

std::string LoopbackServer::readRequest(int connection) {
  // A client that says nothing doesn't hold up the end of a test.
  const timeval patience = {5, 0};
  ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
  std::string request;
  std::size_t wanted = std::string::npos;
  char buffer[4096];
  while (request.size() < wanted) {
    const auto count = ::recv(connection, buffer, sizeof(buffer), 0);
    if (count <= 0) break;
    request.append(buffer, static_cast<std::size_t>(count));
    const auto end = request.find("\r\n\r\n");
    if (end == std::string::npos) continue;
    std::size_t length = 0;
    if (const auto at = request.find("Content-Length: "); at < end)
      length = std::stoul(request.substr(at + 16));
    wanted = end + 4 + length;
  }
  return request;
}

std::string LoopbackServer::address(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

std::vector<std::string> LoopbackServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

int LoopbackServer::connections() const {
  const std::lock_guard lock(mutex_);
  return accepted_;
}

void LoopbackServer::send(int connection, const std::string& bytes) {
  for (std::size_t sent = 0; sent < bytes.size();) {
    const auto count = ::send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return;
    sent += static_cast<std::size_t>(count);
  }
}

std::string LoopbackServer::answer(int status, const std::string& body, const std::string& headers) {
  return "HTTP/1.1 " + std::to_string(status) + " Told\r\n" + headers +
         "Content-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

void LoopbackServer::reset(int connection) {
  const linger now = {1, 0};
  ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
}

}  // namespace platform
