#include "Helpers/ScreenCaptureHelper.h"

#include "Platform/DebugLog.h"
#include "Platform/LogText.h"
#include "Platform/NSBundle.h"
#include "Platform/NSWorkspace.h"
#include "Platform/SystemServices.h"

#include <algorithm>
#include <string_view>

namespace velkin {

namespace {

bool isSameName(std::string_view one, std::string_view other) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace

void ScreenCaptureHelper::captureScreen(std::optional<int> windowID) const {
  platform::SystemServices::shared().captureScreen(
      {.isInteractive = true, .windowID = windowID}, [](const auto& picture) {
        if (!picture) {
          platform::debugLog("No screenshot: " + platform::forLog(picture.error().localizedDescription));
          return;
        }
        platform::debugLog("Screenshot saved to: system default location)");
        if (const auto url = platform::URL::parse(*picture)) platform::NSWorkspace::shared().open(*url);
      });
}

std::optional<int> ScreenCaptureHelper::getWindowID(const std::string& processName) const {
  const auto windows = platform::CGWindowListCopyWindowInfo();
  const auto own = platform::NSBundle::main().bundleIdentifier.value_or("");
  const auto found = std::ranges::find_if(windows, [&](const auto& window) {
    return isSameName(window.ownerName, processName) || isSameName(own, processName);
  });
  if (found == windows.end()) return std::nullopt;
  return found->number;
}

}  // namespace velkin
