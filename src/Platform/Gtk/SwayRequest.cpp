#include "Platform/Gtk/SwayRequest.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <array>
#include <memory>
#include <utility>

#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <sys/socket.h>

namespace platform {

namespace {

/// A compositor that takes longer isn't worth the wait: the user has seen the window by then. In parts: while
/// this program itself is busy, as it is at its start, the answer may lie there unread.
constexpr double partOfPatience = 0.25;
constexpr int parts = 4;

/// Keeps itself until the completion has been called.
class Request : public std::enable_shared_from_this<Request> {
 public:
  Request(std::vector<SwayMessage> messages,
          std::function<void(std::optional<std::vector<std::string>>)> completion)
      : messages_(std::move(messages)), completion_(std::move(completion)) {}

  void start(const std::string& socket) {
    for (const auto& message : messages_) bytes_ += frameOf(message);
    wait();
    const auto client = GObjectPtr<GSocketClient>::adopt(g_socket_client_new());
    // A path is no matter of proxies.
    g_socket_client_set_enable_proxy(client.get(), FALSE);
    const auto address = GObjectPtr<GSocketAddress>::adopt(g_unix_socket_address_new(socket.c_str()));
    g_socket_client_connect_async(client.get(), G_SOCKET_CONNECTABLE(address.get()), cancellable_.get(),
                                  called<&Request::connected>, held());
  }

 private:
  void wait() {
    timer_ = DispatchQueue::main().timer(partOfPatience, [self = shared_from_this()] {
      if (++self->partsWaited_ < parts) {
        self->wait();
      } else {
        self->end();
      }
    });
  }

  using Self = std::shared_ptr<Request>;

  Self* held() { return std::make_unique<Self>(shared_from_this()).release(); }

  template <void (Request::*method)(GObject*, GAsyncResult*)>
  static void called(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Self> self(static_cast<Self*>(data));
    ((**self).*method)(source, result);
  }

  void connected(GObject* source, GAsyncResult* result) {
    connection_ = GObjectPtr<GSocketConnection>::adopt(
        g_socket_client_connect_finish(G_SOCKET_CLIENT(source), result, nullptr));
    if (!connection_ || isOver_) return end();
    g_output_stream_write_all_async(g_io_stream_get_output_stream(G_IO_STREAM(connection_.get())),
                                    bytes_.data(), bytes_.size(), G_PRIORITY_DEFAULT, cancellable_.get(),
                                    called<&Request::written>, held());
  }

  void written(GObject* source, GAsyncResult* result) {
    if (!g_output_stream_write_all_finish(G_OUTPUT_STREAM(source), result, nullptr, nullptr) || isOver_)
      return end();
    read();
  }

  void read() {
    g_input_stream_read_async(g_io_stream_get_input_stream(G_IO_STREAM(connection_.get())), buffer_.data(),
                              buffer_.size(), G_PRIORITY_DEFAULT, cancellable_.get(),
                              called<&Request::received>, held());
  }

  void received(GObject* source, GAsyncResult* result) {
    const auto count = g_input_stream_read_finish(G_INPUT_STREAM(source), result, nullptr);
    if (count <= 0 || isOver_) return end();
    frames_.add({buffer_.data(), static_cast<std::size_t>(count)});
    while (auto message = frames_.next()) {
      if (message->type != messages_[answers_.size()].type) return end();
      answers_.push_back(std::move(message->text));
      if (answers_.size() == messages_.size()) return end();
    }
    if (frames_.isBroken()) return end();
    read();
  }

  /// With the answers, if that is all of them.
  void end() {
    if (std::exchange(isOver_, true)) return;
    timer_.reset();
    g_cancellable_cancel(cancellable_.get());
    const bool isWhole = answers_.size() == messages_.size();
    auto completion = std::move(completion_);
    completion(isWhole ? std::optional(std::move(answers_)) : std::nullopt);
  }

  std::vector<SwayMessage> messages_;
  std::function<void(std::optional<std::vector<std::string>>)> completion_;
  std::string bytes_;
  SwayFrames frames_;
  std::vector<std::string> answers_;
  std::array<char, 4096> buffer_ = {};
  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  GObjectPtr<GSocketConnection> connection_;
  std::unique_ptr<Timer> timer_;
  int partsWaited_ = 0;
  bool isOver_ = false;
};

/// The process that listens on a socket; nothing if nobody does.
std::optional<pid_t> listenerAt(const std::string& path) {
  const auto socket = GObjectPtr<GSocket>::adopt(
      g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_DEFAULT, nullptr));
  if (!socket) return std::nullopt;
  g_socket_set_blocking(socket.get(), FALSE);
  const auto address = GObjectPtr<GSocketAddress>::adopt(g_unix_socket_address_new(path.c_str()));
  if (!g_socket_connect(socket.get(), address.get(), nullptr, nullptr)) return std::nullopt;
  ucred peer = {};
  socklen_t size = sizeof peer;
  if (getsockopt(g_socket_get_fd(socket.get()), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
    return std::nullopt;
  // 0 is somebody beyond the walls of a sandbox.
  return peer.pid > 0 ? std::optional(peer.pid) : std::nullopt;
}

}  // namespace

void askSway(const std::string& socket, std::vector<SwayMessage> messages,
             std::function<void(std::optional<std::vector<std::string>>)> completion) {
  std::make_shared<Request>(std::move(messages), std::move(completion))->start(socket);
}

bool isCompositorsOwn(const std::string& socket, const std::string& displaySocket) {
  const auto compositor = listenerAt(displaySocket);
  return compositor && compositor == listenerAt(socket);
}

}  // namespace platform
