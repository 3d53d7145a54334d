#pragma once

#include "Platform/Connection.h"

#include <functional>
#include <string>

namespace platform {

/// Notifications between processes of one user. Main thread.
class NSDistributedNotificationCenter {
 public:
  static NSDistributedNotificationCenter& defaultCenter();
  virtual ~NSDistributedNotificationCenter() = default;

  virtual void post(const std::string& name, const std::string& object) = 0;
  virtual Connection addObserver(const std::string& name,
                                 std::function<void(const std::string& object)> action) = 0;
};

}  // namespace platform
