#pragma once

#include <memory>

namespace platform {

/// Whether an object is still there, for what comes back to it later. The object has one as a member, and who
/// may outlive it a `Watch`: `[this, alive = isAlive_.watch()] { if (alive) ... }`. It ends on the thread
/// that its watches are asked on; a watch may be carried through others.
class Alive {
 public:
  class Watch {
   public:
    explicit operator bool() const noexcept { return !token_.expired(); }

   private:
    friend class Alive;
    explicit Watch(const std::shared_ptr<const bool>& token) noexcept : token_(token) {}
    std::weak_ptr<const bool> token_;
  };

  Alive() = default;
  Alive(const Alive&) = delete;
  Alive& operator=(const Alive&) = delete;

  Watch watch() const noexcept { return Watch(token_); }
  /// Before the object's end, for a destructor whose own work calls back.
  void end() noexcept { token_.reset(); }

 private:
  std::shared_ptr<const bool> token_ = std::make_shared<const bool>(true);
};

}  // namespace platform
