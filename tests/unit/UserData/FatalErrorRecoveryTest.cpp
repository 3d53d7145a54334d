#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "UserData/FatalErrorRecovery.h"
#include "Values/WebViewSwitchType.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

class FatalErrorRecoveryTest : public testing::Test {
 protected:
  FatalErrorRecoveryTest() {
    platform::setDebugLogSink([this](std::string_view line) { log_.emplace_back(line); });
  }
  ~FatalErrorRecoveryTest() override { platform::setDebugLogSink({}); }

  void recover() { recoverFromFatalError(platform_.userDefaults); }
  bool isStored(std::string_view key) const { return platform_.userDefaults.valueForKey(key).has_value(); }

  platform::HeadlessPlatform platform_;
  std::vector<std::string> log_;
};

TEST_F(FatalErrorRecoveryTest, theFirstZoomOfTheScaleGoes) {
  for (const double zoom : {1.45, 1.4500000001, 1.4549}) {
    platform_.userDefaults.setObject(zoom, "zoomLevel");
    recover();
    EXPECT_FALSE(isStored("zoomLevel")) << zoom;
  }
  EXPECT_EQ(log_.size(), 3U);
}

TEST_F(FatalErrorRecoveryTest, everyOtherZoomStays) {
  for (const double zoom : {1.2, 1.0, 0.55, 1.44, 1.46, 0.0, -1.45, 1e300}) {
    platform_.userDefaults.setObject(zoom, "zoomLevel");
    recover();
    EXPECT_TRUE(isStored("zoomLevel")) << zoom;
  }
  EXPECT_TRUE(log_.empty());
}

TEST_F(FatalErrorRecoveryTest, anAddressThatDoesNotParseGoesAndItsViewOpens) {
  for (const auto type : allWebViewSwitchTypes) {
    if (!isWebView(type)) continue;
    setUrl(type, "Enter Url");
    log_.clear();
    recover();
    EXPECT_FALSE(isStored(rawValue(getUserDefault(type))));
    ASSERT_EQ(log_.size(), 1U);
    EXPECT_NE(log_[0].find(rawValue(getUserDefault(type))), std::string::npos);
    EXPECT_EQ(log_[0].find("Enter Url"), std::string::npos) << "no stored text in the log";
    EXPECT_EQ(getUrl(type).absoluteString(), defaultUrlString(type));
  }
}

TEST_F(FatalErrorRecoveryTest, whatCannotBringTheProgramDownStays) {
  auto& defaults = platform_.userDefaults;
  defaults.setObject("https://example.org/", "chatUrl");
  defaults.setObject("", "bardUrl");
  defaults.setObject(5, "bitUrl");
  defaults.setObject("not an address", "searchBarKey");
  defaults.setObject("not an address", "onboardingChatURL");
  defaults.setObject(99, "lastVisibleWebView");
  const auto before = defaults.stored();
  recover();
  EXPECT_EQ(defaults.stored(), before);
  EXPECT_TRUE(log_.empty());
}

}  // namespace
}  // namespace velkin
