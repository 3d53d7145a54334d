#pragma once

#include "Platform/NSImage.h"

#include <string>
#include <utility>

namespace platform {

/// A picture of which it is known where it came from.
class HeadlessImage : public NSImage {
 public:
  HeadlessImage(std::string source, NSSize size) : path(std::move(source)), size_(size) {}

  const std::string path;

  NSRect frame() const override { return {{0, 0}, size_}; }

 private:
  NSSize size_;
};

}  // namespace platform
