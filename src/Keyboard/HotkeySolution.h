#pragma once

#include "Keyboard/HotkeySolutionDelegate.h"
#include "Keyboard/ModifierFlags.h"

#include <cstdint>

namespace velkin {

/// The older way to two fixed hot keys, kept beside the live one (`KeyboardShortcuts`), whose keys the user
/// can choose. The program doesn't call it. Main thread.
class HotkeySolution {
 public:
  /// Whom the two keys tell; nullptr for nobody.
  static HotkeySolutionDelegate* delegate;

  /// Caps Lock included, which no hot key of the live way knows.
  static std::uint32_t getCarbonFlagsFromCocoaFlags(ModifierFlags cocoaFlags) noexcept;

  /// Each asks for its key once and for all: Command, Shift and G for the popover, Command, Shift and P for
  /// the search bar. A refused one is noted in the log.
  static void registerHotKey();
  static void registerSearchBarHotKey();
};

}  // namespace velkin
