#pragma once

#include "Platform/Connection.h"

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

  static NSNotificationCenter& defaultCenter();

  void post(const NSNotification& notification);
  Connection addObserver(std::string name, Observer observer);

 private:
  struct Entry {
    std::string name;
    std::weak_ptr<Observer> observer;
  };
  std::vector<Entry> entries_;
};

}  // namespace platform
