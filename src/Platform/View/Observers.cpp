#include "Platform/View/Observers.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace platform {

struct Observers::List {
  std::mutex mutex;
  std::vector<std::weak_ptr<std::function<void()>>> callbacks;
};

Observers::Observers() : list_(std::make_unique<List>()) {}
Observers::~Observers() = default;

Connection Observers::subscribe(std::function<void()> callback) {
  auto shared = std::make_shared<std::function<void()>>(std::move(callback));
  const std::lock_guard lock(list_->mutex);
  std::erase_if(list_->callbacks, [](const auto& weak) { return weak.expired(); });
  list_->callbacks.push_back(shared);
  return Connection(std::move(shared));
}

void Observers::notify() const {
  std::vector<std::shared_ptr<std::function<void()>>> present;
  {
    const std::lock_guard lock(list_->mutex);
    for (const auto& weak : list_->callbacks) {
      if (auto callback = weak.lock()) present.push_back(std::move(callback));
    }
  }
  for (const auto& callback : present) (*callback)();
}

}  // namespace platform
