#include "Platform/Headless/HeadlessDesktop.h"

namespace platform {

void HeadlessDistributedNotificationCenter::post(const std::string& name, const std::string& object) {
  posted.emplace_back(name, object);
  const auto [first, last] = observers_.equal_range(name);
  std::vector<std::shared_ptr<std::function<void(const std::string&)>>> present;
  for (auto it = first; it != last; ++it) {
    if (auto action = it->second.lock()) present.push_back(std::move(action));
  }
  for (const auto& action : present) (*action)(object);
}

Connection HeadlessDistributedNotificationCenter::addObserver(
    const std::string& name, std::function<void(const std::string& object)> action) {
  auto shared = std::make_shared<std::function<void(const std::string&)>>(std::move(action));
  observers_.emplace(name, shared);
  return Connection(std::move(shared));
}

}  // namespace platform
