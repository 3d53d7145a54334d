#include "Platform/Platform.h"

#include <atomic>

#include "Platform/DispatchQueue.h"
#include "Platform/FatalError.h"

namespace platform {

namespace {

std::atomic<Platform*> installedPlatform = nullptr;

}  // namespace

Platform& Platform::current() {
  auto* platform = installed();
  if (platform == nullptr) fatalError("No platform is installed");
  return *platform;
}

Platform* Platform::installed() noexcept { return installedPlatform.load(); }

void Platform::install(Platform* platform) noexcept { installedPlatform.store(platform); }

DispatchQueue& DispatchQueue::main() { return Platform::current().mainQueue(); }

double now() { return Platform::current().now(); }

}  // namespace platform
