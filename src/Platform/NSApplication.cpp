#include "Platform/NSApplication.h"

#include <utility>

namespace platform {

int NSApplication::addLocalMonitor(std::uint64_t mask, NSEvent::Monitor handler) {
  monitors_.push_back({nextMonitor_, mask, std::move(handler)});
  return nextMonitor_++;
}

void NSApplication::removeMonitor(int monitor) {
  std::erase_if(monitors_, [&](const Entry& entry) { return entry.id == monitor; });
}

std::optional<NSEvent> NSApplication::filterByMonitors(NSEvent event) {
  // A copy: a monitor may add or remove others.
  const auto present = monitors_;
  std::optional<NSEvent> passed = std::move(event);
  for (const auto& entry : present) {
    if ((entry.mask & NSEvent::mask(passed->type)) == 0) continue;
    passed = entry.handler(*passed);
    if (!passed) break;
  }
  return passed;
}

int NSEvent::addLocalMonitorForEvents(std::uint64_t mask, Monitor handler) {
  return NSApp().addLocalMonitor(mask, std::move(handler));
}

void NSEvent::removeMonitor(int monitor) { NSApp().removeMonitor(monitor); }

}  // namespace platform
