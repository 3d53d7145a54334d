#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace platform {

struct NSNotification {
  std::string name;
  std::map<std::string, std::any> userInfo = {};
};

/// Notifications inside the process, delivered while they are posted, in the order of the observers. Main
/// thread.
class NSNotificationCenter {
 public:
  using Observer = std::function<void(const NSNotification&)>;
  /// Keeps its observer attached for as long as it lives.
  using Token = std::shared_ptr<void>;

  static NSNotificationCenter& defaultCenter();

  void post(const NSNotification& notification);
  [[nodiscard]] Token addObserver(std::string name, Observer observer);

 private:
  struct Entry {
    std::string name;
    std::weak_ptr<Observer> observer;
  };
  std::vector<Entry> entries_;
};

}  // namespace platform
