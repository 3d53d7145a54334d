#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// What gives a window that the user calls up outside of our windows, by a hot key or in the tray, the right
/// to the keyboard.
struct Activation {
  /// The X time stamp of the key's press; 0 where there is none, which stands for the present.
  std::uint32_t time = 0;
  /// The activation token of the desktop; empty where there is none.
  std::string token;
  /// By the pointer, on the icon or in its menu.
  bool isClick = false;
};

/// Makes `activation` the present one for as long as it lives: while the actions run of the key or the click.
/// Main thread.
class ActivationScope {
 public:
  explicit ActivationScope(Activation activation);
  ~ActivationScope();
  ActivationScope(const ActivationScope&) = delete;
  ActivationScope& operator=(const ActivationScope&) = delete;

 private:
  Activation activation_;
  const Activation* outer_;
};

/// The activation whose actions run now; nullptr outside of one. Main thread.
const Activation* presentActivation();

}  // namespace platform
