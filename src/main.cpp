#include "AppDelegate.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/NSApplication.h"

int main() {
  platform::GtkPlatform desktop;
  velkin::AppDelegate delegate;
  return platform::NSApp().run(delegate);
}
