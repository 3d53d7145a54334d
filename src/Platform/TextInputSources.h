#pragma once

#include "Platform/CarbonEvents.h"

#include <cstdint>
#include <memory>
#include <string>

#include <tl/expected.hpp>

namespace platform {

/// A keyboard layout. Main thread.
class TISInputSource {
 public:
  virtual ~TISInputSource() = default;

  /// False for an input source that has no table of keys; then `UCKeyTranslate` must not be asked.
  virtual bool hasUnicodeKeyLayoutData() const = 0;
  /// What the key at this position gives for display, with no modifier held, in UTF-8; empty for a key that
  /// gives nothing.
  virtual tl::expected<std::string, OSStatus> UCKeyTranslate(std::uint16_t keyCode) const = 0;
};

/// The layout in use if it writes ASCII, else the one beside it that does; nullptr if there is none.
std::unique_ptr<TISInputSource> TISCopyCurrentASCIICapableKeyboardLayoutInputSource();

}  // namespace platform
