#pragma once

#include "Timing.h"

#include <atomic>
#include <string>
#include <thread>

#include <libsoup/soup.h>

namespace bench {

/// A chat-completions service on its loopback address, which answers from a thread of its own.
class ChatService {
 public:
  /// `content`: the Markdown of each answer.
  explicit ChatService(const std::string& content);
  ~ChatService();
  ChatService(const ChatService&) = delete;
  ChatService& operator=(const ChatService&) = delete;

  /// When the last answer was given.
  [[nodiscard]] Clock::time_point answered() const { return answered_.load(); }

 private:
  const std::string body_;
  std::atomic<Clock::time_point> answered_ = Clock::time_point();
  GMainContext* context_;
  GMainLoop* loop_;
  std::atomic<bool> listens_ = false;
  std::thread thread_;
};

}  // namespace bench
