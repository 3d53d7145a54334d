#include "Platform/FatalError.h"

#include "Platform/DebugLog.h"
#include "Platform/Platform.h"

#include <cstdlib>
#include <string>

namespace platform {

void fatalError(std::string_view message) {
  debugLog(std::string("Fatal error: ").append(message));
  if (auto* platform = Platform::installed()) platform->noteFatalError(message);
  // No core file and no unwinding: the process holds the user's key and pages in memory.
  std::_Exit(fatalErrorExitCode);
}

void assertionFailure(std::string_view message) {
  debugLog(std::string("Assertion failed: ").append(message));
}

}  // namespace platform
