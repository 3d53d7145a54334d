#pragma once

namespace platform {

/// For the program's start: has the C library give large blocks back as soon as they are freed, on any
/// thread. By itself it keeps more and more once it had to get them.
void keepLittleFreeMemory();

/// Some seconds from now, gives what was freed by then back to the system: the C library keeps what a thread
/// once had for the next time, which after an answer of some megabytes may never come. Any thread.
void giveFreeMemoryBackLater();

}  // namespace platform
