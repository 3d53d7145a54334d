#include "extenstions/NSImageDesktopPicture.h"

#include "Platform/DebugLog.h"
#include "Platform/FatalError.h"
#include "Platform/NSAppearance.h"
#include "Platform/NSScreen.h"
#include "Platform/NSWorkspace.h"

#include <optional>
#include <string>
#include <utility>

namespace velkin {

using platform::NSImage;
using platform::NSScreen;

namespace {

struct Attempt {
  platform::NSSize size;
  NSImage::Completion completion;
};

std::optional<std::string> pictureOn(const std::optional<NSScreen>& screen) {
  if (!screen) return std::nullopt;
  return platform::NSWorkspace::shared().desktopImageURLForScreen(*screen);
}

void takeOwn(const Attempt& attempt) {
  NSImage::named(platform::NSAppearance::isDarkNow() ? "Velkin16x9_dark" : "Velkin16x9_light", attempt.size,
                 [completion = attempt.completion](std::shared_ptr<NSImage> image) {
                   if (!image)
                     platform::fatalError("Unexpectedly found nil while unwrapping an Optional value");
                   completion(std::move(image));
                 });
}

void takeFirst(const Attempt& attempt) {
  const auto screens = NSScreen::screens();
  const auto path = pictureOn(screens.empty() ? std::nullopt : std::optional(screens.front()));
  if (!path) return takeOwn(attempt);
  NSImage::contentsOf(*path, attempt.size, [attempt](std::shared_ptr<NSImage> image) {
    if (!image) return takeOwn(attempt);
    platform::debugLog("Q$: 1b  Success!");
    platform::debugLog("NSImageDesktopPicture", "desktopPicture(ofSize:)", "Got desktop pic from screens.");
    attempt.completion(std::move(image));
  });
}

}  // namespace

void desktopPicture(platform::NSSize ofSize, NSImage::Completion completion) {
  const Attempt attempt{ofSize, std::move(completion)};
  const auto path = pictureOn(NSScreen::main());
  if (!path) return takeFirst(attempt);
  NSImage::contentsOf(*path, ofSize, [attempt](std::shared_ptr<NSImage> image) {
    if (!image) return takeFirst(attempt);
    platform::debugLog("Q$: 1a Success!");
    platform::debugLog("NSImageDesktopPicture", "desktopPicture(ofSize:)", "Got desktop pic from workspace.");
    attempt.completion(std::move(image));
  });
}

}  // namespace velkin
