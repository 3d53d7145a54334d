#include "Platform/Gtk/FreeMemory.h"

#include <atomic>

#include <glib.h>
#include <malloc.h>

namespace platform {

namespace {

constexpr unsigned delay = 5;
/// Only the newest wish is followed: what is to be freed may still be in use at the older ones' time.
std::atomic<int> newest = 0;

constexpr int largeBlock = 1 << 20;

}  // namespace

void keepLittleFreeMemory() {
  mallopt(M_MMAP_THRESHOLD, largeBlock);
  mallopt(M_TRIM_THRESHOLD, 2 * largeBlock);
}

void giveFreeMemoryBackLater() {
  g_timeout_add_seconds(
      delay,
      [](gpointer wish) -> gboolean {
        if (GPOINTER_TO_INT(wish) == newest) malloc_trim(0);
        return G_SOURCE_REMOVE;
      },
      GINT_TO_POINTER(++newest));
}

}  // namespace platform
