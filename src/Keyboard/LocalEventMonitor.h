#pragma once

#include "Platform/NSEvent.h"

#include <cstdint>
#include <utility>

namespace velkin {

/// A local event monitor that is started and stopped, and stops with its owner. Main thread.
class LocalEventMonitor {
 public:
  LocalEventMonitor(std::uint64_t events, platform::NSEvent::Monitor callback)
      : events_(events), callback_(std::move(callback)) {}

  LocalEventMonitor& start() {
    monitor_ = platform::NSEvent::addLocalMonitorForEvents(events_, callback_);
    return *this;
  }
  void stop() { monitor_ = {}; }

 private:
  std::uint64_t events_;
  platform::NSEvent::Monitor callback_;
  platform::Connection monitor_;
};

}  // namespace velkin
