#include "Platform/Headless/HeadlessQueue.h"

#include <utility>

namespace platform {

struct HeadlessQueue::TimerTable {
  std::map<Key, std::function<void()>> due;
  std::uint64_t next = 0;
};

class HeadlessQueue::HeadlessTimer : public Timer {
 public:
  HeadlessTimer(std::weak_ptr<TimerTable> table, Key key) : table_(std::move(table)), key_(key) {}
  ~HeadlessTimer() override { HeadlessTimer::invalidate(); }
  void invalidate() noexcept override {
    if (auto table = table_.lock()) table->due.erase(key_);
  }

 private:
  std::weak_ptr<TimerTable> table_;
  Key key_;
};

HeadlessQueue::HeadlessQueue() : timers_(std::make_shared<TimerTable>()) {}

void HeadlessQueue::async(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  queue_.push_back(std::move(work));
}

HeadlessQueue::Key HeadlessQueue::addTimer(double seconds, std::function<void()> work) {
  const Key key{now() + seconds, timers_->next++};
  timers_->due.emplace(key, std::move(work));
  return key;
}

std::unique_ptr<Timer> HeadlessQueue::timer(double seconds, std::function<void()> work) {
  return std::make_unique<HeadlessTimer>(timers_, addTimer(seconds, std::move(work)));
}

void HeadlessQueue::asyncAfter(double seconds, std::function<void()> work) {
  addTimer(seconds, std::move(work));
}

bool HeadlessQueue::isCurrent() const noexcept { return std::this_thread::get_id() == thread_; }

void HeadlessQueue::drain() {
  for (;;) {
    std::function<void()> work;
    {
      const std::lock_guard lock(mutex_);
      if (queue_.empty()) return;
      work = std::move(queue_.front());
      queue_.pop_front();
    }
    work();
  }
}

void HeadlessQueue::advance(double seconds) {
  const double end = now() + seconds;
  drain();
  while (!timers_->due.empty() && timers_->due.begin()->first.first <= end) {
    auto first = timers_->due.extract(timers_->due.begin());
    setNow(first.key().first);
    first.mapped()();
    drain();
  }
  setNow(end);
}

double HeadlessQueue::now() const {
  const std::lock_guard lock(mutex_);
  return now_;
}

void HeadlessQueue::setNow(double secondsSince1970) {
  const std::lock_guard lock(mutex_);
  now_ = secondsSince1970;
}

bool HeadlessQueue::isIdle() const {
  const std::lock_guard lock(mutex_);
  return queue_.empty() && timers_->due.empty();
}

}  // namespace platform
