#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

/// Notifications between processes of one user. Main thread.
class NSDistributedNotificationCenter {
 public:
  /// An observer that is attached for as long as the token lives.
  class Token {
   public:
    virtual ~Token() = default;
  };

  static NSDistributedNotificationCenter& defaultCenter();
  virtual ~NSDistributedNotificationCenter() = default;

  virtual void post(const std::string& name, const std::string& object) = 0;
  virtual std::unique_ptr<Token> addObserver(const std::string& name,
                                             std::function<void(const std::string& object)> action) = 0;
};

}  // namespace platform
