#include "Platform/DebugLog.h"

#include "Platform/LogText.h"
#include "Platform/StandardError.h"

#include <mutex>
#include <string>

namespace platform {

namespace {

/// In characters: four bytes each at the most.
constexpr std::size_t longestLine = StandardError::longestLine / 4 - 1;

std::mutex mutex;

std::function<void(std::string_view)>& currentSink() {
  static std::function<void(std::string_view)> sink;
  return sink;
}

}  // namespace

void debugLog(std::string_view line) {
  const auto text = cleanLine(line, longestLine);
  const std::lock_guard lock(mutex);
  if (currentSink()) {
    currentSink()(text);
  } else {
    StandardError::shared().writeLine(text);
  }
}

void debugLog(std::string_view sourceFile, std::string_view function, std::string_view message) {
  std::string line = "Q$: ";
  line.append(sourceFile).append(".").append(function).append(" ").append(message);
  debugLog(line);
}

void setDebugLogSink(std::function<void(std::string_view)> sink) {
  const std::lock_guard lock(mutex);
  currentSink() = std::move(sink);
}

}  // namespace platform
