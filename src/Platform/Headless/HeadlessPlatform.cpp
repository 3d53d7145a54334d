#include "Platform/Headless/HeadlessPlatform.h"

#include <utility>

namespace platform {

HeadlessPlatform::HeadlessPlatform() { install(this); }

HeadlessPlatform::~HeadlessPlatform() { install(nullptr); }

void HeadlessPlatform::noteFatalError(std::string_view message) noexcept { lastFatalError = message; }

std::optional<std::string> HeadlessPlatform::takeLastFatalError() {
  return std::exchange(lastFatalError, std::nullopt);
}

}  // namespace platform
