#pragma once

#include "Controller/ViewFactory.h"
#include "Platform/NSPanel.h"

#include <array>
#include <cstddef>
#include <memory>

namespace velkin {

/// The floating windows beside the popover, one of each kind. Main thread.
class AuxiliaryPanels {
 public:
  enum class Kind { about, shortcuts, appearance };
  static constexpr std::size_t kinds = 3;

  /// `delegate` is told when one closes. Both outlive the panels.
  AuxiliaryPanels(const ViewFactory& views, platform::NSWindowDelegate* delegate);

  /// A new panel, unless the kind's present one is visible. With no main screen nothing opens.
  void open(Kind kind);
  /// Lets go of the content of each visible panel; that of `closing` ends with this.
  void releaseContents(platform::NSPanel& closing);
  /// Makes it a floating window at `origin`, which has the keyboard.
  void show(platform::NSPanel& panel, platform::NSPoint origin) const;

  platform::NSPanel& panel(Kind kind) const { return *slots_[static_cast<std::size_t>(kind)].panel; }
  const ViewFactory::Controller& content(Kind kind) const {
    return slots_[static_cast<std::size_t>(kind)].content;
  }

 private:
  struct Slot {
    /// Empty until the first opening.
    std::unique_ptr<platform::NSPanel> panel = platform::NSPanel::make();
    ViewFactory::Controller content;
  };

  const ViewFactory& views_;
  platform::NSWindowDelegate* delegate_;
  std::array<Slot, kinds> slots_;
};

}  // namespace velkin
