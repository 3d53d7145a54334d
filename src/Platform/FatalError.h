#pragma once

#include <string_view>
#include <utility>

namespace platform {

/// What a required value's absence is called, here and in everything that a user may have to report.
inline constexpr std::string_view unwrappedNil = "Unexpectedly found nil while unwrapping an Optional value";
inline constexpr std::string_view implicitlyUnwrappedNil =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";

/// The exit code of a process that ended by `fatalError`.
inline constexpr int fatalErrorExitCode = 70;

/// Ends the process because of something that can't occur. Writes "Fatal error: " and the message to standard
/// error, stores the settings that a `Together` keeps back, and lets the installed platform note it, so that
/// the next start can put back the stored value that may have been the cause. Any thread.
[[noreturn]] void fatalError(std::string_view message);

/// Notes in the debug log that something is not as it should be; the caller goes on with what it has. Any
/// thread.
void assertionFailure(std::string_view message);

/// The value of `optional`, or the end of the process.
template <class Optional>
decltype(auto) unwrap(Optional&& optional, std::string_view message = unwrappedNil) {
  if (!optional) fatalError(message);
  return *std::forward<Optional>(optional);
}

}  // namespace platform
