#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Keeps one observer attached for as long as it lives.
class Subscription {
 public:
  Subscription() = default;
  Subscription(Subscription&&) noexcept = default;
  Subscription& operator=(Subscription&&) noexcept = default;

 private:
  friend class Observers;
  explicit Subscription(std::shared_ptr<std::function<void()>> callback) : callback_(std::move(callback)) {}
  std::shared_ptr<std::function<void()>> callback_;
};

/// Who wants to hear of a change. All operations may be called on any thread; an observer is called on the
/// thread that made the change, and may still be called once while its subscription ends on another thread.
class Observers {
 public:
  Observers();
  ~Observers();
  Observers(const Observers&) = delete;
  Observers& operator=(const Observers&) = delete;

  [[nodiscard]] Subscription subscribe(std::function<void()> callback);
  void notify() const;

 private:
  struct List;
  std::unique_ptr<List> list_;
};

}  // namespace platform
