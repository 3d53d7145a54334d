#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace platform {

class NSView;

/// A question, or a message, in a small window at another one. Main thread.
struct NSAlert {
  struct Button {
    /// `confirm` is the one of Return, `cancel` the one of Escape and of closing. `destroy` stands out as a
    /// warning.
    enum class Role { plain, confirm, cancel, destroy };
    std::string title;
    Role role = Role::plain;
  };

  std::string messageText;
  std::string informativeText;
  /// In the order in which they are read. None: there is one button, "OK".
  std::vector<Button> buttons;

  /// Which button was chosen. The one of Escape also if the window goes.
  using Completion = std::function<void(std::size_t button)>;

  /// Shows it at the window of `view`, or for nullptr at the one that has the keyboard; else by itself. The
  /// popover stays as long as it is open, and whoever closes that window closes this one. `completion` runs
  /// once, in a later turn of the main loop.
  void beginSheetModal(const NSView* view, Completion completion) const;

  /// The button of Escape: the one of that role, else the only one, else the last one.
  std::size_t cancelButton() const noexcept;
};

}  // namespace platform
