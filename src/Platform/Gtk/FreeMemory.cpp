#include "Platform/Gtk/FreeMemory.h"

#include <atomic>

#include <glib.h>
#include <malloc.h>

namespace platform {

namespace {

constexpr unsigned delay = 5;
std::atomic<bool> isPlanned = false;

}  // namespace

void giveFreeMemoryBackLater() {
  if (isPlanned.exchange(true)) return;
  g_timeout_add_seconds(
      delay,
      [](gpointer) -> gboolean {
        isPlanned = false;
        malloc_trim(0);
        return G_SOURCE_REMOVE;
      },
      nullptr);
}

}  // namespace platform
