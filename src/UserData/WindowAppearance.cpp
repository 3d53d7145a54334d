#include "UserData/WindowAppearance.h"

namespace velkin {

namespace {

constexpr const char* windowAppearanceDidChange = "WindowAppearance_didChange";

}  // namespace

WindowAppearance::WindowAppearance()
    : token_(platform::NSNotificationCenter::defaultCenter().addObserver(
          windowAppearanceDidChange, [this](const platform::NSNotification&) { notifyObservers(); })) {}

void WindowAppearance::didChange() {
  platform::NSNotificationCenter::defaultCenter().post({.name = windowAppearanceDidChange});
}

}  // namespace velkin
