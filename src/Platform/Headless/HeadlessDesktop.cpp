#include "Platform/Headless/HeadlessDesktop.h"

namespace platform {

class HeadlessDistributedNotificationCenter::ObserverToken : public Token {
 public:
  explicit ObserverToken(std::shared_ptr<std::function<void(const std::string&)>> action)
      : action_(std::move(action)) {}

 private:
  std::shared_ptr<std::function<void(const std::string&)>> action_;
};

void HeadlessDistributedNotificationCenter::post(const std::string& name, const std::string& object) {
  posted.emplace_back(name, object);
  const auto [first, last] = observers_.equal_range(name);
  std::vector<std::shared_ptr<std::function<void(const std::string&)>>> present;
  for (auto it = first; it != last; ++it) {
    if (auto action = it->second.lock()) present.push_back(std::move(action));
  }
  for (const auto& action : present) (*action)(object);
}

std::unique_ptr<NSDistributedNotificationCenter::Token> HeadlessDistributedNotificationCenter::addObserver(
    const std::string& name, std::function<void(const std::string& object)> action) {
  auto shared = std::make_shared<std::function<void(const std::string&)>>(std::move(action));
  observers_.emplace(name, shared);
  return std::make_unique<ObserverToken>(std::move(shared));
}

}  // namespace platform
