#pragma once

#include "Platform/SwayFrames.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Sends messages to sway, over a connection of their own, and gives the texts of all the answers, in order,
/// to `completion`: nothing if one doesn't come, isn't what was asked for, or doesn't come in time. Nobody
/// waits: it comes in a later turn of the main loop. Main thread.
void askSway(const std::string& socket, std::vector<SwayMessage> messages,
             std::function<void(std::optional<std::vector<std::string>> answers)> completion);

/// True if the compositor behind a Wayland display's socket is the one that listens on `socket`: environments
/// outlive their compositors, and are handed down to others. Waits for nobody.
bool isCompositorsOwn(const std::string& socket, const std::string& displaySocket);

}  // namespace platform
