#include "Platform/Gtk/LibraryMessages.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "Platform/StandardError.h"

#include <cerrno>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

/// There in a build with a sanitizer only.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* file);

namespace platform {

namespace {

std::string_view fieldNamed(const char* name, const GLogField* fields, gsize count) {
  for (gsize i = 0; i < count; ++i) {
    if (g_strcmp0(fields[i].key, name) != 0 || fields[i].value == nullptr) continue;
    const auto* value = static_cast<const char*>(fields[i].value);
    return fields[i].length < 0 ? std::string_view(value)
                                : std::string_view(value, static_cast<std::size_t>(fields[i].length));
  }
  return {};
}

std::string_view nameOf(GLogLevelFlags level) {
  if ((level & G_LOG_LEVEL_ERROR) != 0) return "error";
  if ((level & G_LOG_LEVEL_CRITICAL) != 0) return "critical";
  if ((level & G_LOG_LEVEL_WARNING) != 0) return "warning";
  return "message";
}

GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer) {
  const std::string domain(fieldNamed("GLIB_DOMAIN", fields, count));
  if (g_log_writer_default_would_drop(level, domain.c_str()) != FALSE) return G_LOG_WRITER_HANDLED;
  std::string line = domain.empty() ? "Library" : forLog(domain);
  line.append(" ").append(nameOf(level)).append(": ").append(forLog(fieldNamed("MESSAGE", fields, count)));
  debugLog(line);
  return G_LOG_WRITER_HANDLED;
}

/// Line by line, however long they are. A thread's whole life.
void readOn(int file) {
  constexpr std::size_t longest = 4096;
  std::string line;
  char some[4096];
  for (;;) {
    const auto count = ::read(file, some, sizeof some);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    for (const char c : std::string_view(some, static_cast<std::size_t>(count))) {
      if (c != '\n') {
        if (line.size() < longest) line += c;
        continue;
      }
      if (!line.empty()) debugLog("Web engine: " + forLog(line));
      line.clear();
    }
  }
}

void takeStandardErrorOfOthers() {
  const int own = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  int ends[2] = {-1, -1};
  if (own < 0 || ::pipe2(ends, O_CLOEXEC) != 0) return;
  try {
    std::thread(readOn, ends[0]).detach();
  } catch (const std::system_error&) {
    return;
  }
  StandardError::shared().moveTo(own);
  ::dup2(ends[1], STDERR_FILENO);
  ::close(ends[1]);
  // A sanitizer's report is the last that a process writes: nobody would read it out of the pipe any more.
  if (__sanitizer_set_report_fd != nullptr)
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(own)));
}

}  // namespace

void sendLibraryMessagesToDebugLog() {
  static std::once_flag once;
  std::call_once(once, [] {
    takeStandardErrorOfOthers();
    g_log_set_writer_func(write, nullptr, nullptr);
  });
}

}  // namespace platform
