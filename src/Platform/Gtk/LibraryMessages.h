#pragma once

namespace platform {

/// Has what the libraries below print go through the debug log, whose rules then hold for it too: nobody is
/// waited for, and what a page or a server can bring in is cut. Where standard error has a reader that may
/// sleep (a pipe, a connection), it is the log's alone from here on: web processes, which would stand still
/// with the reader, and programs that are started get one that leads nowhere. For the program's start; once
/// is enough.
void sendLibraryMessagesToDebugLog();

}  // namespace platform
