#include "Helpers/UserDefaultsHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/FileUserDefaults.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "UserData/FatalErrorRecovery.h"
#include "fuzz/support/Require.h"
#include "fuzz/support/ScratchFolder.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

using fuzz::require;

namespace {

void readAll(const velkin::UserDefaultsHelper& settings) {
  for (const double number : {settings.webViewWidth(), settings.webViewHeight(),
                              settings.webViewFSToggleWidth(), settings.webViewFSToggleHeight()}) {
    require(std::isfinite(number) && number != 0, "a size is a number, and not zero");
  }
  // A zoom is rounded after the default was put in for none: 0.001 is none at the end, which pages know of.
  require(std::isfinite(settings.webViewZoom()), "the zoom is a number");
  const auto view = velkin::rawValue(settings.lastVisibleWebView());
  require(view >= 0 && view <= 10, "the last visible view is one");
  settings.showToolBar();
  settings.stickyMenu();
  settings.releaseNoteBuildVersion();
  settings.hasBeenThreeHoursSinceLGPTVisible();
  settings.sideBarGroup1();
  settings.sideBarGroup4();
  settings.searchBarSearches();
  settings.lastVisibleEasterEgg();
  settings.getString(velkin::UserDefault::searchKey);
}

}  // namespace

/// Whatever stands in the settings' file: no crash, each setting reads as something that can be used, what is
/// set is there at the next start, and so is everything else that could be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFolder folder;
  static platform::HeadlessPlatform desktop;
  platform::setDebugLogSink([](std::string_view) {});
  const std::string_view input(reinterpret_cast<const char*>(data), size);

  if (const auto list = platform::readPropertyList(input)) {
    const auto written = platform::writeXMLPropertyList(*list);
    require(written.has_value(), "what was read can be written");
    require(written->size() <= platform::extentOf(*list).bytes + 1024, "its extent is no less than it takes");
    const auto again = platform::readPropertyList(*written);
    require(again.has_value(), "what was written can be read");
    // A NaN is not equal to itself; its text is.
    require(platform::writeXMLPropertyList(*again) == written, "it reads as it was written");
  }

  const auto path = folder.file("domain.plist", input);
  {
    platform::FileUserDefaults store(path);
    readAll(velkin::UserDefaultsHelper(store));
    velkin::recoverFromFatalError(store);
    readAll(velkin::UserDefaultsHelper(store));
    store.setObject("set", "fuzz");
  }
  platform::FileUserDefaults next(path);
  require(next.stringForKey("fuzz") == "set", "what was set is there at the next start");
  readAll(velkin::UserDefaultsHelper(next));
  for (const auto& entry : std::filesystem::directory_iterator(path.parent_path())) {
    if (entry.path().string().find(".corrupt-") != std::string::npos) std::filesystem::remove(entry.path());
  }
  return 0;
}
