#include "Platform/Gtk/GtkPlatform.h"

#include <gtest/gtest.h>

// The address sanitizer's, if it is there. Leaks are told apart by the libraries in their stacks (tests/sanitizers), and
// these have no frame pointers.
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }  // NOLINT

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The toolkit can be started once in a process, so one desktop serves all tests.
  platform::GtkPlatform desktop;
  desktop.startToolkit();
  return RUN_ALL_TESTS();
}
