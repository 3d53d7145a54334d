#include "Helpers/UserDefaultsHelper.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "gtest/gtest.h"

#include <cmath>
#include <limits>

namespace velkin {
namespace {

using platform::PropertyListValue;

class UserDefaultsHelperTest : public testing::Test {
 protected:
  UserDefaultsHelperTest() {
    platform::setDebugLogSink([this](std::string_view line) { log_.emplace_back(line); });
  }
  ~UserDefaultsHelperTest() override { platform::setDebugLogSink({}); }

  void store(std::string_view key, PropertyListValue value) {
    platform_.userDefaults.setObject(std::move(value), key);
  }
  PropertyListValue::Dictionary stored() const { return platform_.userDefaults.stored(); }

  platform::HeadlessPlatform platform_;
  UserDefaultsHelper helper_;
  std::vector<std::string> log_;
};

struct Flag {
  bool (UserDefaultsHelper::*read)() const;
  std::string_view key;
  bool absent;
};

constexpr Flag flags[] = {
    {&UserDefaultsHelper::experimentalEnabled, "experimentalEnabled", false},
    {&UserDefaultsHelper::showToolBar, "showToolBar", true},
    {&UserDefaultsHelper::startAtLogin, "startAtLogin", false},
    {&UserDefaultsHelper::stickyMenu, "stickyMenu", false},
    {&UserDefaultsHelper::hemingwayEnabled, "hemingwayEnabled", false},
    {&UserDefaultsHelper::isAlternateViewVisible, "isAlternateViewVisible", false},
    {&UserDefaultsHelper::isDarkMode, "isDarkMode", false},
    {&UserDefaultsHelper::onboardingCompleted, "onboardingCompleted", false},
};

TEST_F(UserDefaultsHelperTest, everyFlagHasItsKeyAndItsDefault) {
  for (const auto& flag : flags) {
    EXPECT_EQ((helper_.*flag.read)(), flag.absent) << flag.key;
    store(flag.key, !flag.absent);
    EXPECT_EQ((helper_.*flag.read)(), !flag.absent) << flag.key;
    store(flag.key, flag.absent);
    EXPECT_EQ((helper_.*flag.read)(), flag.absent) << flag.key;
  }
}

TEST_F(UserDefaultsHelperTest, aFlagOfAnotherTypeReadsAsItsDefault) {
  for (const auto& flag : flags) {
    for (const PropertyListValue& wrong :
         {PropertyListValue("x"), PropertyListValue(1), PropertyListValue(PropertyListValue::Array{true})}) {
      store(flag.key, wrong);
      EXPECT_EQ((helper_.*flag.read)(), flag.absent) << flag.key;
    }
  }
}

TEST_F(UserDefaultsHelperTest, onlyTheToolBarIsRegisteredAndOnlyWhenItIsRead) {
  auto& defaults = platform_.userDefaults;
  EXPECT_FALSE(defaults.boolForKey("showToolBar"));
  for (const auto& flag : flags) (helper_.*flag.read)();
  for (const auto& flag : flags) EXPECT_EQ(defaults.valueForKey(flag.key).has_value(), flag.absent);
  EXPECT_TRUE(stored().empty()) << "registering stores nothing";
}

struct Size {
  double (UserDefaultsHelper::*read)() const;
  std::string_view key;
  double absent;
};

constexpr Size sizes[] = {
    {&UserDefaultsHelper::webViewHeight, "viewHeight", 600},
    {&UserDefaultsHelper::webViewWidth, "viewWidth", 600},
    {&UserDefaultsHelper::webViewFSToggleHeight, "viewFSToggleHeight", 600},
    {&UserDefaultsHelper::webViewFSToggleWidth, "viewFSToggleWidth", 600},
    {&UserDefaultsHelper::webViewZoom, "zoomLevel", 1.0},
};

TEST_F(UserDefaultsHelperTest, everySizeHasItsKeyAndItsDefault) {
  for (const auto& size : sizes) {
    EXPECT_EQ((helper_.*size.read)(), size.absent) << size.key;
    store(size.key, 980.0);
    EXPECT_EQ((helper_.*size.read)(), 980.0) << size.key;
    store(size.key, 1240);
    EXPECT_EQ((helper_.*size.read)(), 1240.0) << "an integer is a number, " << size.key;
  }
}

TEST_F(UserDefaultsHelperTest, aSizeOfZeroReadsAsTheDefault) {
  for (const auto& size : sizes) {
    for (const PropertyListValue& zero :
         {PropertyListValue(0.0), PropertyListValue(-0.0), PropertyListValue(0), PropertyListValue(1e-300)}) {
      store(size.key, zero);
      EXPECT_EQ((helper_.*size.read)(), size.absent) << size.key;
    }
  }
}

TEST_F(UserDefaultsHelperTest, aSizeThatIsNoFiniteNumberReadsAsTheDefault) {
  for (const auto& size : sizes) {
    for (const PropertyListValue& bad :
         {PropertyListValue(std::nan("")), PropertyListValue(std::numeric_limits<double>::infinity()),
          PropertyListValue(1e300), PropertyListValue("600"), PropertyListValue(true)}) {
      store(size.key, bad);
      EXPECT_EQ((helper_.*size.read)(), size.absent) << size.key;
    }
  }
}

TEST_F(UserDefaultsHelperTest, sizesAreReadInSinglePrecision) {
  store("viewHeight", 600.1);
  EXPECT_EQ(helper_.webViewHeight(), static_cast<double>(600.1F));
  EXPECT_NE(helper_.webViewHeight(), 600.1);
  EXPECT_EQ(helper_.getDouble(UserDefault::webViewHeight, 1), static_cast<double>(600.1F));
  EXPECT_EQ(helper_.getDouble(UserDefault::webViewWidth, 12.5), 12.5);
}

TEST_F(UserDefaultsHelperTest, theZoomIsRoundedToTwoDecimals) {
  for (const double zoom : {1.2, 0.55, 1.45, 0.8, 1.15, 0.05}) {
    store("zoomLevel", zoom);
    EXPECT_EQ(helper_.webViewZoom(), zoom);
  }
  store("zoomLevel", 1.239);
  EXPECT_EQ(helper_.webViewZoom(), 1.24);
  store("zoomLevel", 0.125);
  EXPECT_EQ(helper_.webViewZoom(), 0.13) << "a tie goes away from zero";
  store("zoomLevel", -0.125);
  EXPECT_EQ(helper_.webViewZoom(), -0.13);
  store("zoomLevel", 0.001);
  EXPECT_EQ(helper_.webViewZoom(), 0) << "the default is taken before the rounding";
}

TEST_F(UserDefaultsHelperTest, textsAreEmptyOrTheGivenDefaultIfAbsent) {
  EXPECT_EQ(helper_.onboardingChatURL(), "");
  EXPECT_EQ(helper_.getString(UserDefault::chatUrl), "");
  EXPECT_EQ(helper_.getString(UserDefault::chatUrl, "default"), "default");
  store("chatUrl", "");
  EXPECT_EQ(helper_.getString(UserDefault::chatUrl, "default"), "") << "stored as empty is not absent";
  store("chatUrl", 5);
  EXPECT_EQ(helper_.getString(UserDefault::chatUrl, "default"), "default");
  store("onboardingChatURL", "https://example.org/");
  EXPECT_EQ(helper_.onboardingChatURL(), "https://example.org/");
}

TEST_F(UserDefaultsHelperTest, integersAreZeroIfAbsent) {
  EXPECT_EQ(helper_.releaseNoteBuildVersion(), 0);
  EXPECT_EQ(helper_.lastTimeChatGPTVisible(), 0);
  store("releaseNoteVersion", 22);
  store("lastTimeChatGPTVisible", 1'700'000'000.75);
  EXPECT_EQ(helper_.releaseNoteBuildVersion(), 22);
  EXPECT_EQ(helper_.lastTimeChatGPTVisible(), 1'700'000'000);
}

TEST_F(UserDefaultsHelperTest, theLastViewAndWhatBelongsToIt) {
  struct Row {
    WebViewSwitchType view;
    UserDefault setting;
    EasterEggItem item;
  };
  using Type = WebViewSwitchType;
  const Row rows[] = {{Type::chatgpt, UserDefault::chatUrl, EasterEggItem::chatGPT},
                      {Type::bard, UserDefault::bardUrl, EasterEggItem::bard},
                      {Type::bitbucket, UserDefault::bitUrl, EasterEggItem::bitBucket},
                      {Type::gitlab, UserDefault::gitUrl, EasterEggItem::gitLab},
                      {Type::hemingway, UserDefault::hemingwayUrl, EasterEggItem::hemingway},
                      {Type::jira, UserDefault::jiraUrl, EasterEggItem::jira},
                      {Type::markdown, UserDefault::chatUrl, EasterEggItem::chatGPT},
                      {Type::onboarding, UserDefault::chatUrl, EasterEggItem::chatGPT},
                      {Type::releaseNotes, UserDefault::chatUrl, EasterEggItem::chatGPT},
                      {Type::editUrls, UserDefault::chatUrl, EasterEggItem::chatGPT},
                      {Type::search, UserDefault::chatUrl, EasterEggItem::chatGPT}};
  EXPECT_EQ(helper_.lastVisibleWebView(), Type::chatgpt) << "nothing stored";
  int number = 0;
  for (const auto& row : rows) {
    store("lastVisibleWebView", number++);
    EXPECT_EQ(helper_.lastVisibleWebView(), row.view);
    EXPECT_EQ(helper_.lastVisibleUserDefault(), row.setting);
    EXPECT_EQ(helper_.lastVisibleEasterEgg(), row.item);
  }
}

TEST_F(UserDefaultsHelperTest, anUnknownLastViewIsTheChat) {
  for (const std::int64_t number : {std::int64_t{99}, std::int64_t{11}, std::int64_t{-1},
                                    std::numeric_limits<std::int64_t>::max(), std::int64_t{1} << 32}) {
    store("lastVisibleWebView", number);
    EXPECT_EQ(helper_.lastVisibleWebView(), WebViewSwitchType::chatgpt) << number;
    EXPECT_EQ(helper_.lastVisibleUserDefault(), UserDefault::chatUrl);
    EXPECT_EQ(helper_.lastVisibleEasterEgg(), EasterEggItem::chatGPT);
  }
}

TEST_F(UserDefaultsHelperTest, theRawValueIsWhatIsStored) {
  EXPECT_FALSE(helper_.getValue(UserDefault::webViewZoom));
  store("zoomLevel", "odd");
  EXPECT_EQ(helper_.getValue(UserDefault::webViewZoom), PropertyListValue("odd"));
}

TEST_F(UserDefaultsHelperTest, everySettingIsStoredUnderItsKey) {
  for (std::size_t i = 0; i < settingRows.size(); ++i) {
    helper_.set(static_cast<int>(i), static_cast<UserDefault>(i));
    EXPECT_EQ(stored().at(std::string(settingRows[i].key)), PropertyListValue(i));
  }
  EXPECT_EQ(stored().size(), settingRows.size());
}

TEST_F(UserDefaultsHelperTest, anAbsentOptionalLeavesTheStoredValue) {
  helper_.setOptionally(true, UserDefault::stickyMenu);
  EXPECT_TRUE(helper_.stickyMenu());
  helper_.setOptionally(std::nullopt, UserDefault::stickyMenu);
  EXPECT_TRUE(helper_.stickyMenu());
  helper_.setOptionally(std::optional<double>(), UserDefault::webViewZoom);
  EXPECT_FALSE(helper_.getValue(UserDefault::webViewZoom));
  helper_.setOptionally(std::optional<std::string>("text"), UserDefault::chatUrl);
  EXPECT_EQ(helper_.getString(UserDefault::chatUrl), "text");
}

std::string groupText(const SidebarGroup& group, platform::HeadlessPlatform& platform) {
  UserDefaultsHelper().setSidebarGroup(group, UserDefault::sideBarGroup1);
  return platform.userDefaults.stringForKey("sideBarGroup1").value_or("nothing");
}

TEST_F(UserDefaultsHelperTest, aGroupIsStoredAsFourCharacters) {
  using Type = WebViewSwitchType;
  EXPECT_EQ(groupText({.mainView = Type::chatgpt, .sideBar1 = Type::jira}, platform_), "05-0");
  EXPECT_EQ(groupText({.mainView = Type::chatgpt, .sideBar2 = Type::jira}, platform_), "0-50");
  EXPECT_EQ(groupText({.isFullScreen = true, .mainView = Type::jira, .sideBar1 = Type::markdown}, platform_),
            "56-1");
  EXPECT_EQ(
      groupText({.mainView = Type::bard, .sideBar1 = Type::gitlab, .sideBar2 = Type::hemingway}, platform_),
      "1340");
}

TEST_F(UserDefaultsHelperTest, everyGroupSlotHasItsKey) {
  const SidebarGroup group{.mainView = WebViewSwitchType::bard, .sideBar1 = WebViewSwitchType::gitlab};
  using Read = std::optional<SidebarGroup> (UserDefaultsHelper::*)() const;
  const std::pair<UserDefault, Read> slots[] = {
      {UserDefault::sideBarGroup1, &UserDefaultsHelper::sideBarGroup1},
      {UserDefault::sideBarGroup2, &UserDefaultsHelper::sideBarGroup2},
      {UserDefault::sideBarGroup3, &UserDefaultsHelper::sideBarGroup3},
      {UserDefault::sideBarGroup4, &UserDefaultsHelper::sideBarGroup4}};
  for (const auto& [key, read] : slots) {
    EXPECT_FALSE((helper_.*read)());
    helper_.setSidebarGroup(group, key);
    EXPECT_EQ((helper_.*read)(), group);
    store(rawValue(key), "");
    EXPECT_FALSE((helper_.*read)()) << "an empty text is no group";
  }
}

TEST_F(UserDefaultsHelperTest, theDefaultGroup) {
  EXPECT_EQ(UserDefaultsHelper::defaultSidebarGroup(), (SidebarGroup{.isFullScreen = false,
                                                                     .mainView = WebViewSwitchType::chatgpt,
                                                                     .sideBar1 = WebViewSwitchType::jira,
                                                                     .sideBar2 = std::nullopt}));
}

TEST_F(UserDefaultsHelperTest, aGroupTextIsReadCharacterByCharacter) {
  using Type = WebViewSwitchType;
  struct Row {
    std::string text;
    SidebarGroup group;
  };
  const auto jira = Type::jira;
  const Row rows[] = {
      {"1--1", {.isFullScreen = true, .mainView = Type::bard, .sideBar1 = jira}},
      {"0-50", {.mainView = Type::chatgpt, .sideBar1 = jira, .sideBar2 = jira}},
      {"05-0", {.sideBar1 = jira}},
      {"6", {.mainView = Type::markdown, .sideBar1 = jira}},
      {"-", {.sideBar1 = jira}},
      {"xxxx", {.sideBar1 = jira}},
      {"x3x1", {.isFullScreen = true, .sideBar1 = Type::gitlab}},
      {"2342", {.mainView = Type::bitbucket, .sideBar1 = Type::gitlab, .sideBar2 = Type::hemingway}},
      {"234-", {.mainView = Type::bitbucket, .sideBar1 = Type::gitlab, .sideBar2 = Type::hemingway}},
      {"23411111",
       {.isFullScreen = true,
        .mainView = Type::bitbucket,
        .sideBar1 = Type::gitlab,
        .sideBar2 = Type::hemingway}},
      {"9001",
       {.isFullScreen = true,
        .mainView = Type::editUrls,
        .sideBar1 = Type::chatgpt,
        .sideBar2 = Type::chatgpt}},
      {"\xC3\xA9"
       "341",
       {.isFullScreen = true, .sideBar1 = Type::gitlab, .sideBar2 = Type::hemingway}},
      {"\xD9\xA3---", {.sideBar1 = jira}},
      {" 341", {.isFullScreen = true, .sideBar1 = Type::gitlab, .sideBar2 = Type::hemingway}},
  };
  for (const auto& row : rows) {
    store("sideBarGroup2", row.text);
    EXPECT_EQ(helper_.getSidebarGroup(UserDefault::sideBarGroup2), row.group) << row.text;
  }
}

TEST_F(UserDefaultsHelperTest, theHistoryComesBackAsItWasStored) {
  const std::vector<SearchBarSearch> searches = {{.date = 712345678.125,
                                                  .searchPrompt = "first / \"quoted\"\n",
                                                  .resultMarkdown = "<p>\xE2\x82\xAC</p>"},
                                                 {.date = -5, .searchPrompt = "second"}};
  helper_.setSearchBarSearches(searches);
  EXPECT_EQ(helper_.getSearchBarSearches(), searches);
  EXPECT_EQ(helper_.searchBarSearches(), searches);
}

TEST_F(UserDefaultsHelperTest, theHistoryIsPrettyPrintedJSON) {
  helper_.setSearchBarSearches({{.date = 712345678, .searchPrompt = "a/b", .resultMarkdown = "<b>"},
                                {.date = 0.5, .searchPrompt = ""}});
  EXPECT_EQ(platform_.userDefaults.stringForKey("searchBarRecentSearches"),
            "{\n"
            "  \"searches\" : [\n"
            "    {\n"
            "      \"date\" : 712345678,\n"
            "      \"searchPrompt\" : \"a\\/b\",\n"
            "      \"resultMarkdown\" : \"<b>\"\n"
            "    },\n"
            "    {\n"
            "      \"date\" : 0.5,\n"
            "      \"searchPrompt\" : \"\"\n"
            "    }\n"
            "  ]\n"
            "}");
}

TEST_F(UserDefaultsHelperTest, aClearedHistoryIsAnEmptyArray) {
  helper_.setSearchBarSearches({});
  EXPECT_EQ(platform_.userDefaults.stringForKey("searchBarRecentSearches"),
            "{\n  \"searches\" : [\n\n  ]\n}");
  EXPECT_TRUE(helper_.getSearchBarSearches().empty());
}

TEST_F(UserDefaultsHelperTest, readingTheHistoryIsLogged) {
  helper_.setSearchBarSearches({});
  log_.clear();
  helper_.getSearchBarSearches();
  EXPECT_EQ(log_, std::vector<std::string>{
                      "Q$: UserDefaultsHelper.cpp.getSearchBarSearches() SearchBarSearches converted"});
}

TEST_F(UserDefaultsHelperTest, anUnreadableHistoryIsEmptyLoggedAndLeftAsItIs) {
  for (const std::string text : {"no JSON", "{}", "[]", "{\"searches\" : 5}", "{\"searches\" : [{}]}"}) {
    store("searchBarRecentSearches", text);
    log_.clear();
    EXPECT_TRUE(helper_.getSearchBarSearches().empty()) << text;
    ASSERT_EQ(log_.size(), 1U);
    EXPECT_TRUE(log_[0].starts_with("Q$: Error decoding JSON data: ")) << log_[0];
    EXPECT_EQ(platform_.userDefaults.stringForKey("searchBarRecentSearches"), text);
  }
}

TEST_F(UserDefaultsHelperTest, aFreshInstallationLogsADecodingErrorForEachRead) {
  helper_.getSearchBarSearches();
  helper_.getSearchBarSearches();
  ASSERT_EQ(log_.size(), 2U);
  EXPECT_TRUE(log_[1].starts_with("Q$: Error decoding JSON data: "));
}

TEST_F(UserDefaultsHelperTest, aHistoryThatCannotBeEncodedIsStoredAsNothing) {
  store("searchBarRecentSearches", "old");
  helper_.setSearchBarSearches({{.date = std::nan(""), .searchPrompt = "p"}});
  EXPECT_EQ(platform_.userDefaults.stringForKey("searchBarRecentSearches"), "");
  ASSERT_EQ(log_.size(), 1U);
  EXPECT_TRUE(log_[0].starts_with("Error encoding JSON: "));
}

TEST_F(UserDefaultsHelperTest, storedTextNeverReachesTheLog) {
  store("searchBarRecentSearches", "{\"searches\" : [{\"date\" : 1, \"searchPrompt\" : \"my secret");
  helper_.getSearchBarSearches();
  for (const auto& line : log_) EXPECT_EQ(line.find("secret"), line.npos) << line;
}

TEST_F(UserDefaultsHelperTest, threeHoursArePastAfterExactlyThreeHours) {
  EXPECT_TRUE(helper_.hasBeenThreeHoursSinceLGPTVisible()) << "never stored";
  platform_.queue.setNow(1'700'000'000.9);
  store("lastTimeChatGPTVisible", 1'700'000'000.0 - 10800);
  EXPECT_TRUE(helper_.hasBeenThreeHoursSinceLGPTVisible());
  store("lastTimeChatGPTVisible", 1'700'000'000.0 - 10799);
  EXPECT_FALSE(helper_.hasBeenThreeHoursSinceLGPTVisible());
  store("lastTimeChatGPTVisible", 1'700'000'000.0 - 10799.5);
  EXPECT_TRUE(helper_.hasBeenThreeHoursSinceLGPTVisible()) << "read back as whole seconds";
}

TEST_F(UserDefaultsHelperTest, anyStoredTimeAtAllIsCompared) {
  store("lastTimeChatGPTVisible", std::numeric_limits<std::int64_t>::min());
  EXPECT_TRUE(helper_.hasBeenThreeHoursSinceLGPTVisible());
  store("lastTimeChatGPTVisible", std::numeric_limits<std::int64_t>::max());
  EXPECT_FALSE(helper_.hasBeenThreeHoursSinceLGPTVisible());
}

TEST_F(UserDefaultsHelperTest, allObjectsSeeTheSameSettings) {
  UserDefaultsHelper other;
  helper_.set(1.2, UserDefault::webViewZoom);
  EXPECT_EQ(other.webViewZoom(), 1.2);
}

}  // namespace
}  // namespace velkin
