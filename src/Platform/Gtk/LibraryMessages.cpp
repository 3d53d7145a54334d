#include "Platform/Gtk/LibraryMessages.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"

#include <mutex>
#include <string>

#include <glib.h>

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

}  // namespace

void sendLibraryMessagesToDebugLog() {
  static std::once_flag once;
  std::call_once(once, [] { g_log_set_writer_func(write, nullptr, nullptr); });
}

}  // namespace platform
