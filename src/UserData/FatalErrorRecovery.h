#pragma once

#include "Platform/NSUserDefaults.h"

namespace velkin {

/// For the start after a fatal error, and only for that one: removes the stored values that can bring the
/// program down, so that they don't do it again and again, each with a line in the log that names the key.
/// These are a zoom at the beginning of the scale (the chat's zoom is the step before it, which doesn't
/// exist) and an address that doesn't parse.
void recoverFromFatalError(platform::NSUserDefaults& defaults);

}  // namespace velkin
