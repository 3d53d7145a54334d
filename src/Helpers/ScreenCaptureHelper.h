#pragma once

#include <optional>
#include <string>

namespace velkin {

/// Pictures of the screen, taken by the desktop. Main thread.
class ScreenCaptureHelper {
 public:
  /// The user chooses what is in the picture, which then opens in the program that shows pictures. Comes back
  /// before it is taken.
  void captureScreen(std::optional<int> windowID) const;

  /// The number of the first window of a program on the screen, by its name or its identifier; nothing if it
  /// has none.
  std::optional<int> getWindowID(const std::string& processName = "com.Tarnvale.Velkin") const;
};

}  // namespace velkin
