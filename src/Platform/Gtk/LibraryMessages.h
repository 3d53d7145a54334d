#pragma once

namespace platform {

/// Has what the libraries below print go through the debug log, whose rules then hold for it too: nobody is
/// waited for, and what a page or a server can bring in is cut. Once is enough.
void sendLibraryMessagesToDebugLog();

}  // namespace platform
