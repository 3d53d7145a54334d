#include "Keyboard/ModifierFlags.h"

#include "Platform/CarbonEvents.h"

#include <array>
#include <string_view>

namespace velkin {

using platform::NSEvent;

namespace {

namespace UnicodeSymbols {
constexpr std::string_view functionKey = "🌐︎";
}  // namespace UnicodeSymbols

struct Modifier {
  ModifierFlags flag;
  /// 0 for one that hot keys don't have.
  std::uint32_t carbonBit;
  std::string_view symbol;
};

/// In the order of the glyphs.
constexpr std::array modifierTable = {
    Modifier{NSEvent::controlFlag, platform::carbon::controlKey, "⌃"},
    Modifier{NSEvent::optionFlag, platform::carbon::optionKey, "⌥"},
    Modifier{NSEvent::shiftFlag, platform::carbon::shiftKey, "⇧"},
    Modifier{NSEvent::commandFlag, platform::carbon::cmdKey, "⌘"},
    Modifier{NSEvent::functionFlag, 0, UnicodeSymbols::functionKey},
};

}  // namespace

ModifierFlags modifiers(const NSEvent& event) noexcept {
  return event.modifierFlags & NSEvent::deviceIndependentFlagsMask &
         ~(NSEvent::capsLockFlag | NSEvent::numericPadFlag | NSEvent::functionFlag);
}

std::uint32_t carbon(ModifierFlags flags) noexcept {
  std::uint32_t bits = 0;
  for (const auto& modifier : modifierTable) {
    if ((flags & modifier.flag) != 0) bits |= modifier.carbonBit;
  }
  return bits;
}

ModifierFlags modifierFlags(std::uint32_t carbonModifiers) noexcept {
  ModifierFlags flags = 0;
  for (const auto& modifier : modifierTable) {
    if ((carbonModifiers & modifier.carbonBit) != 0) flags |= modifier.flag;
  }
  return flags;
}

std::string modifierSymbols(ModifierFlags flags) {
  std::string symbols;
  for (const auto& modifier : modifierTable) {
    if ((flags & modifier.flag) != 0) symbols += modifier.symbol;
  }
  return symbols;
}

}  // namespace velkin
