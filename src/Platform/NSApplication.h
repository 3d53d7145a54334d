#pragma once

#include "Platform/NSEvent.h"
#include "Platform/NSMenu.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

/// Told of the program's beginning and end. Main thread.
class NSApplicationDelegate {
 public:
  virtual ~NSApplicationDelegate() = default;
  virtual void applicationDidFinishLaunching() = 0;
  virtual void applicationWillTerminate() = 0;
  /// The user started the program once more while it runs, or asked it over the desktop's bus to show itself.
  virtual void applicationDidReopen() = 0;
  /// The desktop, or whoever speaks to it, asks the program to do something: "toggle-popover",
  /// "toggle-search", or "show-view" with a view's name.
  virtual void applicationPerformAction(std::string_view name, std::string_view argument) = 0;
};

/// The running program. Main thread.
class NSApplication {
 public:
  virtual ~NSApplication() = default;

  /// The event that is being handled; nothing outside of one.
  std::optional<NSEvent> currentEvent;
  /// nullptr, unless somebody gives the program one.
  std::shared_ptr<NSMenu> mainMenu;

  /// Runs the main loop with `delegate` until the program is told to end; returns the exit code.
  virtual int run(NSApplicationDelegate& delegate) = 0;
  /// Ends the process with this code. Nothing is saved at this moment; nothing needs to be.
  [[noreturn]] virtual void exit(int code) = 0;

  /// Offers an edit action ("copy:", "selectAll:", "deleteBackward:") to what has the keyboard. True if it
  /// was taken.
  virtual bool sendAction(std::string_view selector) = 0;

  /// True if what has the keyboard is a text that is being written, in a window of ours or in a page.
  virtual bool isTextBeingEdited() const = 0;

  /// While it is true, the active window gets the keys that the desktop and other programs keep to
  /// themselves, as far as the desktop lets it.
  virtual void setTakesReservedKeys(bool takes) = 0;

  Connection addLocalMonitor(std::uint64_t mask, NSEvent::Monitor handler);
  /// Shows an event to the monitors, to the newest first. Nothing if one of them kept it.
  std::optional<NSEvent> filterByMonitors(NSEvent event);

 private:
  struct Entry {
    std::uint64_t mask;
    NSEvent::Monitor handler;
  };
  /// In the order in which they were added. Their connections own them.
  std::vector<std::weak_ptr<const Entry>> monitors_;
};

/// The application of the installed platform.
NSApplication& NSApp();

}  // namespace platform
