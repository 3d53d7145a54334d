#include "Platform/NSImage.h"

#include "Platform/Platform.h"

#include <utility>

namespace platform {

void NSImage::contentsOf(const std::string& path, NSSize size, Completion completion) {
  Platform::current().loadImage(path, size, std::move(completion));
}

void NSImage::named(const std::string& name, NSSize size, Completion completion) {
  Platform::current().loadImage(Platform::current().pathOfImage(name), size, std::move(completion));
}

View ImageView(const std::shared_ptr<NSImage>& image) {
  return HostedView(
      image.get(), [image] { return image.get(); }, [](NSView&) {});
}

}  // namespace platform
