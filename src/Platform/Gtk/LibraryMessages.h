#pragma once

namespace platform {

/// Has what the libraries below print go through the debug log, whose rules then hold for it too: nobody is
/// waited for, and what a page or a server can bring in is cut. So does what the web processes print, which
/// would stand still with a standard error that nobody reads: they get one that a thread of ours does. For
/// the program, before it starts threads or processes; once is enough.
void sendLibraryMessagesToDebugLog();

}  // namespace platform
