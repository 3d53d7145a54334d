#pragma once

#include "Platform/DispatchQueue.h"

#include <thread>

namespace platform {

/// The main queue on GLib's default main context.
class GtkMainQueue : public DispatchQueue {
 public:
  void async(std::function<void()> work) override;
  std::unique_ptr<Timer> timer(double seconds, std::function<void()> work) override;
  void asyncAfter(double seconds, std::function<void()> work) override;
  bool isCurrent() const noexcept override { return std::this_thread::get_id() == thread_; }

 private:
  std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace platform
