#pragma once

#include "Platform/NSImage.h"

#include <string>

namespace platform {

/// See `NSImage::contentsOf`. Main thread; the toolkit runs.
void loadImage(const std::string& path, NSSize size, NSImage::Completion completion);

}  // namespace platform
