#include "Platform/Headless/HeadlessURLSession.h"

#include "Platform/DispatchQueue.h"

#include <atomic>
#include <utility>

namespace platform {

struct HeadlessURLSession::Exchange {
  Exchange(URL from, Answer with, Completion then)
      : url(std::move(from)), answer(std::move(with)), completion(std::move(then)) {}

  URL url;
  Answer answer;
  Completion completion;
  std::atomic<bool> isCancelled = false;
  std::atomic<bool> isComplete = false;
};

class HeadlessURLSession::Task : public NSURLSessionDataTask {
 public:
  explicit Task(std::shared_ptr<Exchange> exchange) : exchange_(std::move(exchange)) {}
  void cancel() override { exchange_->isCancelled = true; }

 private:
  std::shared_ptr<Exchange> exchange_;
};

HeadlessURLSession::~HeadlessURLSession() { waitUntilDelivered(); }

void HeadlessURLSession::addAnswer(const std::string& address, Answer answer) {
  const std::lock_guard lock(mutex_);
  answers_[address].push_back(std::move(answer));
}

void HeadlessURLSession::setDelivery(Delivery delivery) {
  const std::lock_guard lock(mutex_);
  delivery_ = delivery;
}

void HeadlessURLSession::deliver() {
  {
    const std::lock_guard lock(mutex_);
    for (auto& exchange : std::exchange(held_, {})) {
      threads_.emplace_back([exchange] { complete(*exchange); });
    }
  }
  waitUntilDelivered();
}

void HeadlessURLSession::waitUntilDelivered() {
  for (;;) {
    std::vector<std::thread> threads;
    {
      const std::lock_guard lock(mutex_);
      threads = std::exchange(threads_, {});
    }
    if (threads.empty()) return;
    for (auto& thread : threads) thread.join();
  }
}

std::vector<URLRequest> HeadlessURLSession::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

HeadlessURLSession::Answer HeadlessURLSession::takeAnswer(const std::string& address) {
  const auto scripted = answers_.find(address);
  if (scripted == answers_.end()) {
    return Answer{.error = NSError{NSURLErrorDomain, NSURLErrorCannotConnectToHost,
                                   "Could not connect to the server."}};
  }
  auto answer = scripted->second.front();
  if (scripted->second.size() > 1) scripted->second.pop_front();
  return answer;
}

void HeadlessURLSession::complete(Exchange& exchange) {
  if (exchange.isComplete.exchange(true)) return;
  auto& answer = exchange.answer;
  if (exchange.isCancelled) answer.error = NSError{NSURLErrorDomain, NSURLErrorCancelled, "cancelled"};
  if (answer.error) {
    exchange.completion(std::nullopt, std::nullopt, answer.error);
  } else if (!answer.isHTTP) {
    exchange.completion(answer.data, std::nullopt, std::nullopt);
  } else {
    exchange.completion(answer.data, HTTPURLResponse{answer.statusCode, answer.headers, exchange.url},
                        std::nullopt);
  }
}

std::unique_ptr<NSURLSessionDataTask> HeadlessURLSession::dataTask(URLRequest request,
                                                                   Completion completion) {
  std::shared_ptr<Exchange> exchange;
  Delivery delivery;
  const double patience = request.timeoutInterval;
  {
    const std::lock_guard lock(mutex_);
    exchange = std::make_shared<Exchange>(request.url, takeAnswer(request.url.absoluteString()),
                                          std::move(completion));
    requests_.push_back(std::move(request));
    delivery = delivery_;
    if (exchange->answer.isSilent) {
      delivery = Delivery::held;
    } else if (delivery == Delivery::background) {
      threads_.emplace_back([exchange] { complete(*exchange); });
    } else if (delivery == Delivery::held) {
      held_.push_back(exchange);
    }
  }
  if (exchange->answer.isSilent) {
    DispatchQueue::main().asyncAfter(patience, [this, exchange] {
      exchange->answer.error = NSError{NSURLErrorDomain, NSURLErrorTimedOut, "The request timed out."};
      const std::lock_guard lock(mutex_);
      threads_.emplace_back([exchange] { complete(*exchange); });
    });
  } else if (delivery == Delivery::inlined) {
    complete(*exchange);
  }
  return std::make_unique<Task>(std::move(exchange));
}

}  // namespace platform
