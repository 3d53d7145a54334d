#include "Platform/Gtk/LibraryMessages.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "Platform/StandardError.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

/// There in a build with a sanitizer only. The name and the number that goes for a pointer are the
/// sanitizers' own.
extern "C" [[gnu::weak]] void __sanitizer_set_report_fd(void* file);  // NOLINT(bugprone-reserved-identifier)

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

/// Web processes write to standard error themselves, and wait for who reads it.
void takeStandardErrorFromOthers() {
  struct stat status {};
  if (::fstat(STDERR_FILENO, &status) != 0 || (!S_ISFIFO(status.st_mode) && !S_ISSOCK(status.st_mode)))
    return;
  const int own = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (own < 0 || nowhere < 0) return;
  StandardError::shared().moveTo(own);
  ::dup2(nowhere, STDERR_FILENO);
  ::close(nowhere);
  if (__sanitizer_set_report_fd != nullptr)
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(own)));
}

}  // namespace

void sendLibraryMessagesToDebugLog() {
  static std::once_flag once;
  std::call_once(once, [] {
    takeStandardErrorFromOthers();
    g_log_set_writer_func(write, nullptr, nullptr);
  });
}

}  // namespace platform
