#include "Platform/DebugLog.h"

#include <cstdio>
#include <mutex>
#include <string>

namespace platform {

namespace {

std::mutex mutex;
std::function<void(std::string_view)>& currentSink() {
  static std::function<void(std::string_view)> sink;
  return sink;
}

}  // namespace

void debugLog(std::string_view line) {
  const std::lock_guard lock(mutex);
  if (currentSink()) {
    currentSink()(line);
    return;
  }
  // One write for each line, so that lines of several threads or processes never mix.
  std::string text(line);
  text += '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
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
