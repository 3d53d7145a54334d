#pragma once

#include "Platform/NSPasteboard.h"

namespace platform {

/// The desktop's clipboard. Without a display it takes nothing.
class GtkPasteboard : public NSPasteboard {
 public:
  void clearContents() override;
  bool setString(const std::string& text, std::string_view type) override;
};

}  // namespace platform
