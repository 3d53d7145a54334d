#pragma once

#include "Platform/DispatchQueue.h"

#include <functional>
#include <memory>

namespace velkin {

/// What the desktop's notices tell after the start: a new user, where the program is and which keys reach it;
/// and whoever has lost a global shortcut to another program, that it is so, once for each loss. Told a
/// moment later, when the desktop has said which keys it gives. Main thread.
[[nodiscard]] std::unique_ptr<platform::Timer> tellAfterStart(bool isFreshInstall,
                                                              std::function<void()> openPopover,
                                                              std::function<void()> openShortcuts);

}  // namespace velkin
