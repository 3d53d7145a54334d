#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace platform {

/// A server on this machine that reads a request and does with the connection what the test says.
class LoopbackServer {
 public:
  /// Gets the connection's socket and the whole request. The connection is closed when it returns.
  using Handler = std::function<void(int connection, const std::string& request)>;

  explicit LoopbackServer(Handler handler);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::string address(const std::string& path = "/") const;
  /// What came in so far, whole requests in order.
  std::vector<std::string> requests() const;

  /// How often somebody connected, with or without a request.
  int connections() const;

  static void send(int connection, const std::string& bytes);
  /// A whole answer with its length.
  static std::string answer(int status, const std::string& body, const std::string& headers = {});
  /// Closes so that the other side sees a reset.
  static void reset(int connection);

 private:
  void serve();
  static std::string readRequest(int connection);

  Handler handler_;
  int listener_ = -1;
  int port_ = 0;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  int accepted_ = 0;
  std::vector<std::thread> connections_;
  std::thread thread_;
};

}  // namespace platform
