#include "UserData/FatalErrorRecovery.h"

#include "Helpers/UserDefaultsHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/URL.h"
#include "Values/AppearanceFontSize.h"
#include "Values/WebViewSwitchType.h"

#include <string>

namespace velkin {

namespace {

void reset(platform::NSUserDefaults& defaults, UserDefault setting, std::string_view why) {
  std::string message = "After a fatal error the setting \"";
  message.append(rawValue(setting)).append("\" is back to its default: ").append(why);
  platform::debugLog("FatalErrorRecovery.cpp", "recoverFromFatalError()", message);
  defaults.removeObjectForKey(rawValue(setting));
}

}  // namespace

void recoverFromFatalError(platform::NSUserDefaults& defaults) {
  const UserDefaultsHelper helper(defaults);
  if (helper.webViewZoom() == rawValue(allAppearanceFontSizes.front())) {
    reset(defaults, UserDefault::webViewZoom, "it was the first zoom of the scale");
  }
  for (const auto type : allWebViewSwitchTypes) {
    if (!isWebView(type)) continue;
    const auto setting = getUserDefault(type);
    const auto address = helper.getString(setting);
    if (!address.empty() && !platform::URL::parse(address)) {
      reset(defaults, setting, "it was no address");
    }
  }
}

}  // namespace velkin
