#include "Platform/NSNotificationCenter.h"

#include <utility>

namespace platform {

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static NSNotificationCenter center;
  return center;
}

void NSNotificationCenter::post(const NSNotification& notification) {
  // A copy: an observer may add or remove others.
  const auto present = entries_;
  for (const auto& entry : present) {
    if (entry.name != notification.name) continue;
    if (const auto observer = entry.observer.lock()) (*observer)(notification);
  }
}

Connection NSNotificationCenter::addObserver(std::string name, Observer observer) {
  std::erase_if(entries_, [](const Entry& entry) { return entry.observer.expired(); });
  auto shared = std::make_shared<Observer>(std::move(observer));
  entries_.push_back({std::move(name), shared});
  return Connection(std::move(shared));
}

}  // namespace platform
