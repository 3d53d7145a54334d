#pragma once

#include <optional>
#include <string>

namespace platform {

/// A folder of the program's own for files that are gone with the session: for its owner only, made if it is
/// missing. Nothing if there is none that could be trusted.
std::optional<std::string> NSTemporaryDirectory();

}  // namespace platform
