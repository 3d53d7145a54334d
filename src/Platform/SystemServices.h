#pragma once

#include "Platform/NSError.h"
#include "Platform/NSPrintInfo.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <tl/expected.hpp>

namespace platform {

/// A window on the screen.
struct CGWindow {
  std::string ownerName;
  int ownerPID = 0;
  /// As the display knows it; nothing where it tells no numbers.
  std::optional<int> number = {};
};

/// What a picture of the screen is to be of.
struct ScreenCapture {
  /// The user chooses what is in it.
  bool isInteractive = true;
  /// The window that is wanted, for desktops that let programs choose.
  std::optional<int> windowID = {};
};

/// What the desktop does for programs beside showing their windows. Main thread.
class SystemServices {
 public:
  static SystemServices& shared();
  virtual ~SystemServices() = default;

  /// See `SMLoginItemSetEnabled`.
  virtual bool setLoginItemEnabled(const std::string& identifier, bool isEnabled) = 0;
  /// Of this program: of others' windows no desktop tells every program.
  virtual std::vector<CGWindow> windowsOnScreen() = 0;
  /// Brings a process's windows to the front. A process of another program is left where it is.
  virtual void activate(int processIdentifier) = 0;
  /// The completion gets the address of the file in which the desktop put the picture.
  virtual void captureScreen(const ScreenCapture& capture,
                             std::function<void(tl::expected<std::string, NSError>)> completion) = 0;
  /// Shows the print dialogue for a PDF document's bytes; `ended` comes when the user has answered, with what
  /// went wrong, if anything did.
  virtual void printDocument(const std::string& pdf, const NSPrintInfo& info,
                             std::function<void(std::optional<NSError>)> ended) = 0;
};

/// Has the helper program of that identifier started with the user's next sessions, or not any more. False if
/// it is known at once that this failed.
bool SMLoginItemSetEnabled(const std::string& identifier, bool isEnabled);

std::vector<CGWindow> CGWindowListCopyWindowInfo();

}  // namespace platform
