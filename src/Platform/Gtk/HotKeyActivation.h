#pragma once

#include <cstdint>
#include <string>

#include <gtk/gtk.h>

namespace platform {

/// What gives a window that a hot key brings up the right to the keyboard.
struct HotKeyActivation {
  /// The X time stamp of the key's press; 0 where there is none, which stands for the present.
  std::uint32_t time = 0;
  /// The activation token of the desktop; empty where there is none.
  std::string token;
};

/// Makes `activation` the present one for as long as it lives: while a hot key's actions run. Main thread.
class HotKeyActivationScope {
 public:
  explicit HotKeyActivationScope(HotKeyActivation activation);
  ~HotKeyActivationScope();
  HotKeyActivationScope(const HotKeyActivationScope&) = delete;
  HotKeyActivationScope& operator=(const HotKeyActivationScope&) = delete;

 private:
  HotKeyActivation activation_;
  const HotKeyActivation* outer_;
};

/// The activation of the hot key whose actions run now; nullptr outside of one. Main thread.
const HotKeyActivation* presentHotKeyActivation();

/// `gtk_window_present`, by the right of the hot key whose actions run now, if there is one: then a window
/// manager that keeps the keyboard to itself is asked once more after a moment. Main thread.
void presentWindow(GtkWindow* window);

}  // namespace platform
