#pragma once

namespace platform {

/// Some seconds from now, gives what was freed by then back to the system: the C library keeps what a thread
/// once had for the next time, which after an answer of some megabytes may never come. Any thread.
void giveFreeMemoryBackLater();

}  // namespace platform
