#pragma once

#include "Platform/NSEvent.h"

#include <cstdint>
#include <string>

namespace velkin {

/// Bits of `platform::NSEvent::modifierFlags`.
using ModifierFlags = std::uint32_t;

/// The modifiers that the user holds: without locks, and without what a key says of itself.
ModifierFlags modifiers(const platform::NSEvent& event) noexcept;

/// The four modifiers of hot keys, from one numbering to the other. All other bits are dropped.
std::uint32_t carbon(ModifierFlags flags) noexcept;
ModifierFlags modifierFlags(std::uint32_t carbonModifiers) noexcept;

/// The modifiers' glyphs, in the order in which they are always written.
std::string modifierSymbols(ModifierFlags flags);

}  // namespace velkin
