#include "Platform/Gtk/GtkPlatform.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // The toolkit can be started once in a process, so one desktop serves all tests.
  platform::GtkPlatform desktop;
  desktop.startToolkit();
  return RUN_ALL_TESTS();
}
