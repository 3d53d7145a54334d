#pragma once

#include <functional>

namespace platform {

/// Starts the page of the desktop's settings on which keys are bound. Empty where this desktop's isn't known,
/// or isn't installed. Main thread.
std::function<void()> desktopKeySettings();

}  // namespace platform
