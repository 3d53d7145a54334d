#pragma once

#include "Platform/NSURLSession.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace platform {

/// An HTTP client whose servers are what the test says they are. An address with no scripted answer can't be
/// connected to.
class HeadlessURLSession : public NSURLSession {
 public:
  struct Answer {
    int statusCode = 200;
    std::optional<std::string> data = std::string();
    std::map<std::string, std::string> headers = {};
    /// Instead of all of the above.
    std::optional<NSError> error = std::nullopt;
    /// It never comes: the request ends when its time is over, by the platform's clock.
    bool isSilent = false;
    /// False for an answer that isn't HTTP's: `data` alone.
    bool isHTTP = true;
  };

  enum class Delivery {
    /// The completion runs inside `dataTask`.
    inlined,
    /// The completion runs on a thread of its own, as it does in the real session.
    background,
    /// The answer waits for `deliver`.
    held,
  };

  ~HeadlessURLSession() override;

  /// Answers a request of the address with the next of its answers; the last one is given again and again.
  void addAnswer(const std::string& address, Answer answer);
  void setDelivery(Delivery delivery);
  /// Completes what is held, each on a background thread, and returns when the completions have run.
  void deliver();
  /// Returns when the completions of all `background` requests have run.
  void waitUntilDelivered();

  /// What was asked, in order.
  std::vector<URLRequest> requests() const;

  std::unique_ptr<NSURLSessionDataTask> dataTask(URLRequest request, Completion completion) override;

 private:
  struct Exchange;
  class Task;

  Answer takeAnswer(const std::string& address);
  static void complete(Exchange& exchange);

  mutable std::mutex mutex_;
  Delivery delivery_ = Delivery::inlined;
  std::map<std::string, std::deque<Answer>> answers_;
  std::vector<URLRequest> requests_;
  std::vector<std::shared_ptr<Exchange>> held_;
  std::vector<std::thread> threads_;
};

}  // namespace platform
