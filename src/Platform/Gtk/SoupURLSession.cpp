#include "Platform/Gtk/SoupURLSession.h"

#include "Platform/Gtk/FreeMemory.h"
#include "Platform/Gtk/GObjectPtr.h"

#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include <libsoup/soup.h>

namespace platform {

namespace {

int urlErrorCode(const GError& error) {
  if (error.domain == G_RESOLVER_ERROR) return NSURLErrorCannotFindHost;
  if (error.domain == G_TLS_ERROR) return NSURLErrorSecureConnectionFailed;
  if (error.domain == SOUP_SESSION_ERROR && error.code == SOUP_SESSION_ERROR_TOO_MANY_REDIRECTS) {
    return NSURLErrorHTTPTooManyRedirects;
  }
  if (error.domain == G_IO_ERROR) {
    switch (error.code) {
      case G_IO_ERROR_CANCELLED:
        return NSURLErrorCancelled;
      case G_IO_ERROR_TIMED_OUT:
        return NSURLErrorTimedOut;
      case G_IO_ERROR_CONNECTION_REFUSED:
      case G_IO_ERROR_HOST_UNREACHABLE:
      case G_IO_ERROR_NETWORK_UNREACHABLE:
        return NSURLErrorCannotConnectToHost;
      default:
        break;
    }
  }
  return NSURLErrorNetworkConnectionLost;
}

/// Requests that hang end by themselves after a minute.
constexpr int mostConnections = 256;
/// Seconds. A server may close its end at once, and the client hears of it only when it wants the connection
/// again.
constexpr int idleTimeout = 10;
constexpr std::size_t chunkSize = std::size_t{64} << 10U;
constexpr std::size_t largeBody = std::size_t{1} << 20U;

}  // namespace

/// The thread, its main loop and the client that lives there.
class SoupURLSession::Loop {
 public:
  Loop() : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)) {}
  ~Loop() {
    g_main_loop_quit(loop_);
    if (thread_.joinable()) thread_.join();
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
  }
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  GMainContext* context() const noexcept { return context_; }
  /// On the thread only.
  SoupSession* session() {
    // A server that lets a request hang holds up none that comes after it.
    if (!session_) {
      session_ = GObjectPtr<SoupSession>::adopt(
          soup_session_new_with_options("max-conns", mostConnections, "max-conns-per-host", mostConnections,
                                        "idle-timeout", idleTimeout, nullptr));
    }
    return session_.get();
  }

  void run(std::function<void()> work) {
    start();
    {
      const std::lock_guard lock(workMutex_);
      work_.push_back(std::move(work));
    }
    g_main_context_invoke(
        context_,
        [](gpointer self) -> gboolean {
          static_cast<Loop*>(self)->runNext();
          return G_SOURCE_REMOVE;
        },
        this);
  }

 private:
  void runNext() {
    std::function<void()> next;
    {
      const std::lock_guard lock(workMutex_);
      if (work_.empty()) return;
      next = std::move(work_.front());
      work_.pop_front();
    }
    next();
  }

  void start() {
    const std::lock_guard lock(mutex_);
    if (thread_.joinable()) return;
    thread_ = std::thread([this] {
      g_main_context_push_thread_default(context_);
      g_main_loop_run(loop_);
      session_ = {};
      g_main_context_pop_thread_default(context_);
    });
  }

  GMainContext* context_;
  GMainLoop* loop_;
  std::mutex mutex_;
  std::thread thread_;
  /// Handed over under a lock of ours: those of the library's are invisible to the thread sanitizer.
  std::mutex workMutex_;
  std::deque<std::function<void()>> work_;
  GObjectPtr<SoupSession> session_;
};

/// One request with everything that belongs to it. Lives on the loop's thread.
struct SoupURLSession::Exchange {
  URLRequest request;
  Completion completion;
  GObjectPtr<GCancellable> cancellable;
  GObjectPtr<SoupMessage> message = {};
  GObjectPtr<GInputStream> stream = {};
  std::vector<char> chunk = {};
  std::string body = {};
  GSource* timeout = nullptr;
  bool hasTimedOut = false;

  ~Exchange() { release(); }

  void start(Loop& loop) {
    message = GObjectPtr<SoupMessage>::adopt(
        soup_message_new(request.httpMethod.c_str(), request.url.absoluteString().c_str()));
    if (!message) {
      completion(std::nullopt, std::nullopt, NSError{NSURLErrorDomain, -1002, "unsupported URL"});
      std::default_delete<Exchange>()(this);
      return;
    }
    soup_message_add_flags(message.get(), SOUP_MESSAGE_COLLECT_METRICS);
    SoupMessageHeaders* headers = soup_message_get_request_headers(message.get());
    for (const auto& [name, value] : request.allHTTPHeaderFields) {
      // A value that can't stand in one line can't be sent; it must not become a header of its own.
      constexpr std::string_view breaks("\r\n\0", 3);
      if (value.find_first_of(breaks) != std::string::npos) continue;
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
    }
    if (!request.httpBody.empty()) {
      GBytes* bytes = g_bytes_new(request.httpBody.data(), request.httpBody.size());
      soup_message_set_request_body_from_bytes(message.get(), nullptr, bytes);
      g_bytes_unref(bytes);
    }
    timeout = g_timeout_source_new(static_cast<guint>(request.timeoutInterval * 1000));
    g_source_set_callback(
        timeout,
        [](gpointer self) -> gboolean {
          auto* exchange = static_cast<Exchange*>(self);
          exchange->hasTimedOut = true;
          g_cancellable_cancel(exchange->cancellable.get());
          return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(timeout, loop.context());
    soup_session_send_async(loop.session(), message.get(), G_PRIORITY_DEFAULT, cancellable.get(), answered,
                            this);
  }

  static void answered(GObject* source, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Exchange*>(data);
    GError* raw = nullptr;
    self->stream =
        GObjectPtr<GInputStream>::adopt(soup_session_send_finish(SOUP_SESSION(source), result, &raw));
    const GErrorPtr error(raw);
    if (error) return self->end(failure(*error, self->hasTimedOut));
    self->chunk.resize(chunkSize);
    self->readOn();
  }

  void readOn() {
    g_input_stream_read_async(stream.get(), chunk.data(), chunk.size(), G_PRIORITY_DEFAULT, cancellable.get(),
                              chunkRead, this);
  }

  static void chunkRead(GObject* source, GAsyncResult* result, gpointer data) {
    auto* self = static_cast<Exchange*>(data);
    GError* raw = nullptr;
    const auto count = g_input_stream_read_finish(G_INPUT_STREAM(source), result, &raw);
    const GErrorPtr error(raw);
    if (error) return self->end(failure(*error, self->hasTimedOut));
    if (count == 0) return self->ended();
    self->body.append(self->chunk.data(), static_cast<std::size_t>(count));
    if (self->body.size() <= self->request.longestAnswer) return self->readOn();
    // Nothing more comes in: the connection goes with the stream.
    g_cancellable_cancel(self->cancellable.get());
    self->end(NSError{NSURLErrorDomain, NSURLErrorDataLengthExceedsMaximum, "The answer is too long."});
  }

  static NSError failure(const GError& error, bool hasTimedOut) {
    if (hasTimedOut) return {NSURLErrorDomain, NSURLErrorTimedOut, "The request timed out."};
    return {NSURLErrorDomain, urlErrorCode(error), error.message};
  }

  /// The end of the exchange.
  void end(NSError error) {
    const std::unique_ptr<Exchange> own(this);
    release();
    completion(std::nullopt, std::nullopt, std::move(error));
  }

  void ended() {
    if (isCutOff()) {
      return end(
          NSError{NSURLErrorDomain, NSURLErrorNetworkConnectionLost, "The network connection was lost."});
    }
    const std::unique_ptr<Exchange> own(this);
    auto answer = response();
    const bool isLarge = body.size() > largeBody;
    release();
    completion(std::move(body), std::move(answer), std::nullopt);
    if (isLarge) giveFreeMemoryBackLater();
  }

  /// The completion may take its time; the connection is free for others.
  void release() {
    stream = {};
    chunk = {};
    if (timeout == nullptr) return;
    g_source_destroy(timeout);
    g_source_unref(std::exchange(timeout, nullptr));
  }

  /// The library takes a connection that closes early for the end of the body.
  bool isCutOff() const {
    SoupMessageHeaders* headers = soup_message_get_response_headers(message.get());
    if (request.httpMethod == "HEAD" ||
        soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CONTENT_LENGTH) {
      return false;
    }
    const auto received =
        soup_message_metrics_get_response_body_bytes_received(soup_message_get_metrics(message.get()));
    return received < static_cast<guint64>(soup_message_headers_get_content_length(headers));
  }

  HTTPURLResponse response() const {
    HTTPURLResponse answer{static_cast<int>(soup_message_get_status(message.get())), {}, request.url};
    const GStringPtr address(g_uri_to_string(soup_message_get_uri(message.get())));
    if (auto url = URL::parse(address.get())) answer.url = std::move(*url);
    SoupMessageHeadersIter fields;
    soup_message_headers_iter_init(&fields, soup_message_get_response_headers(message.get()));
    const char* name = nullptr;
    const char* value = nullptr;
    while (soup_message_headers_iter_next(&fields, &name, &value)) answer.allHeaderFields[name] = value;
    return answer;
  }
};

class SoupURLSession::Task : public NSURLSessionDataTask {
 public:
  Task(std::weak_ptr<Loop> loop, GObjectPtr<GCancellable> cancellable)
      : loop_(std::move(loop)), cancellable_(std::move(cancellable)) {}

  void cancel() override {
    if (const auto loop = loop_.lock()) {
      loop->run([cancellable = cancellable_] { g_cancellable_cancel(cancellable.get()); });
    }
  }

 private:
  std::weak_ptr<Loop> loop_;
  GObjectPtr<GCancellable> cancellable_;
};

SoupURLSession::SoupURLSession() : loop_(std::make_shared<Loop>()) {}
SoupURLSession::~SoupURLSession() = default;

std::unique_ptr<NSURLSessionDataTask> SoupURLSession::dataTask(URLRequest request, Completion completion) {
  auto cancellable = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  auto* exchange =
      std::make_unique<Exchange>(Exchange{std::move(request), std::move(completion), cancellable}).release();
  loop_->run([loop = loop_.get(), exchange] { exchange->start(*loop); });
  return std::make_unique<Task>(loop_, std::move(cancellable));
}

}  // namespace platform
