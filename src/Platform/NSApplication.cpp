#include "Platform/NSApplication.h"

#include <utility>

namespace platform {

Connection NSApplication::addLocalMonitor(std::uint64_t mask, NSEvent::Monitor handler) {
  std::erase_if(monitors_, [](const auto& monitor) { return monitor.expired(); });
  auto entry = std::make_shared<const Entry>(Entry{mask, std::move(handler)});
  monitors_.push_back(entry);
  return Connection(std::move(entry));
}

std::optional<NSEvent> NSApplication::filterByMonitors(NSEvent event) {
  // A copy: a monitor may add others and end any, itself included.
  const auto present = monitors_;
  std::optional<NSEvent> passed = std::move(event);
  for (auto monitor = present.rbegin(); monitor != present.rend() && passed; ++monitor) {
    const auto entry = monitor->lock();
    if (entry && (entry->mask & NSEvent::mask(passed->type)) != 0) passed = entry->handler(*passed);
  }
  return passed;
}

Connection NSEvent::addLocalMonitorForEvents(std::uint64_t mask, Monitor handler) {
  return NSApp().addLocalMonitor(mask, std::move(handler));
}

}  // namespace platform
