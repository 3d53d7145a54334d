#include "Platform/Gtk/HotKeyActivation.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/Toolkit.h"
#include "Platform/Gtk/X11Desktop.h"

#include <utility>

namespace platform {

namespace {

/// Until then every window manager has given the keyboard to a window that it lets have it.
constexpr double reluctance = 0.2;

const HotKeyActivation* present = nullptr;

void insist(const GObjectPtr<GtkWindow>& window) {
  auto* widget = GTK_WIDGET(window.get());
  // While the hot key is held down, the window is active for the window manager, but has no keyboard yet.
  if (!gtk_widget_get_mapped(widget) || gtk_window_is_active(window.get()) ||
      X11Desktop::isActive(window.get()))
    return;
  X11Desktop::activate(window.get());
}

}  // namespace

HotKeyActivationScope::HotKeyActivationScope(HotKeyActivation activation)
    : activation_(std::move(activation)), outer_(std::exchange(present, &activation_)) {}

HotKeyActivationScope::~HotKeyActivationScope() { present = outer_; }

const HotKeyActivation* presentHotKeyActivation() { return present; }

void presentWindow(GtkWindow* window) {
  if (present == nullptr) {
    gtk_window_present(window);
    return;
  }
  if (!present->token.empty()) gtk_window_set_startup_id(window, present->token.c_str());
  if (!X11Desktop::isAvailable()) {
    gtk_window_present(window);
    return;
  }
  gtk_widget_realize(GTK_WIDGET(window));
  const auto time = present->time != 0 ? present->time : X11Desktop::serverTime(window);
  X11Desktop::setUserTime(window, time);
  toolkit::presentWithTime(window, time);
  DispatchQueue::main().asyncAfter(reluctance,
                                   [held = GObjectPtr<GtkWindow>::retain(window)] { insist(held); });
}

}  // namespace platform
