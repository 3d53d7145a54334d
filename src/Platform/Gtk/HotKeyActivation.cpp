#include "Platform/Gtk/HotKeyActivation.h"

#include "Platform/Gtk/WindowSystem.h"

#include <utility>

namespace platform {

namespace {

const HotKeyActivation* present = nullptr;

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
  WindowSystem::present().present(window, *present);
}

}  // namespace platform
