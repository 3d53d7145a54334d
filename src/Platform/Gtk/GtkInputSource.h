#pragma once

#include "Platform/TextInputSources.h"

#include <memory>

namespace platform {

/// One of the layouts that the desktop has set up. Main thread, with the toolkit running.
class GtkInputSource : public TISInputSource {
 public:
  /// The active one if it writes ASCII, else the first one that does; nullptr if there is none.
  static std::unique_ptr<TISInputSource> current();

  explicit GtkInputSource(int layout) : layout_(layout) {}
  bool hasUnicodeKeyLayoutData() const override { return true; }
  tl::expected<std::string, OSStatus> UCKeyTranslate(std::uint16_t keyCode) const override;

 private:
  int layout_;
};

}  // namespace platform
