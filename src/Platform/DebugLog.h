#pragma once

#include <functional>
#include <string_view>

namespace platform {

/// Writes one line to the debug log, which goes to standard error. For diagnostics only. Control characters
/// in it are left out, and what is beyond 999 characters. What may stand in it at all is told in LogText.h. A
/// line that can't be written at once is dropped and counted (see StandardError). Any thread.
void debugLog(std::string_view line);

/// The log's usual form: "Q$: ", the source file's name, ".", the function's signature, a blank and the
/// message.
void debugLog(std::string_view sourceFile, std::string_view function, std::string_view message);

/// Sends the log's lines elsewhere, one call for each line; an empty function sends them back to standard
/// error. The sink may be called on any thread, never on two at once.
void setDebugLogSink(std::function<void(std::string_view)> sink);

}  // namespace platform
