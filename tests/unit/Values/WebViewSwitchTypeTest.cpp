#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Platform/FatalError.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/WebViewSwitchType.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

using Type = WebViewSwitchType;

constexpr std::string_view chat = "https://chat.openai.com/chat";

struct ViewRow {
  Type type;
  int number;
  std::string_view name;
  std::string_view address;
  UserDefault setting;
  EasterEggItem item;
  std::optional<UserDefault> written;
};

const ViewRow viewRows[] = {
    {Type::chatgpt, 0, "ChatGPT", chat, UserDefault::chatUrl, EasterEggItem::chatGPT, UserDefault::chatUrl},
    {Type::bard, 1, "Bard", "https://bard.google.com/", UserDefault::bardUrl, EasterEggItem::bard,
     UserDefault::bardUrl},
    {Type::bitbucket, 2, "BitBucket", "https://bitbucket.org/", UserDefault::bitUrl, EasterEggItem::bitBucket,
     UserDefault::bitUrl},
    {Type::gitlab, 3, "GitLab", "https://gitlab.com/", UserDefault::gitUrl, EasterEggItem::gitLab,
     UserDefault::gitUrl},
    {Type::hemingway, 4, "Hemingway", "https://hemingwayapp.com/", UserDefault::hemingwayUrl,
     EasterEggItem::hemingway, UserDefault::hemingwayUrl},
    {Type::jira, 5, "Jira", "https://www.atlassian.com/software/jira", UserDefault::jiraUrl,
     EasterEggItem::jira, UserDefault::jiraUrl},
    {Type::markdown, 6, "Markdown", chat, UserDefault::chatUrl, EasterEggItem::chatGPT, std::nullopt},
    {Type::onboarding, 7, "ChatGPT", "Enter Url", UserDefault::chatUrl, EasterEggItem::chatGPT, std::nullopt},
    {Type::releaseNotes, 8, "ChatGPT", chat, UserDefault::chatUrl, EasterEggItem::chatGPT, std::nullopt},
    {Type::editUrls, 9, "ChatGPT", chat, UserDefault::chatUrl, EasterEggItem::chatGPT, std::nullopt},
    {Type::search, 10, "ChatGPT", chat, UserDefault::chatUrl, EasterEggItem::chatGPT, UserDefault::searchKey},
};

class WebViewSwitchTypeTest : public testing::Test {
 protected:
  platform::HeadlessPlatform platform_;
};

TEST_F(WebViewSwitchTypeTest, everyRowOfTheCatalogue) {
  ASSERT_EQ(std::size(viewRows), allWebViewSwitchTypes.size());
  for (const auto& row : viewRows) {
    EXPECT_EQ(allWebViewSwitchTypes[static_cast<std::size_t>(row.number)], row.type);
    EXPECT_EQ(rawValue(row.type), row.number);
    EXPECT_EQ(fromRawValue<Type>(row.number), row.type);
    EXPECT_EQ(viewName(row.type), row.name);
    EXPECT_EQ(defaultUrlString(row.type), row.address);
    EXPECT_EQ(getUserDefault(row.type), row.setting);
    EXPECT_EQ(getEasterEgg(row.type), row.item);
    EXPECT_EQ(isWebView(row.type), row.number <= 5);
  }
}

TEST_F(WebViewSwitchTypeTest, noNumberOutsideTheCatalogueIsAView) {
  for (const std::int64_t number : {std::int64_t{11}, std::int64_t{-1}, std::int64_t{1} << 32,
                                    std::numeric_limits<std::int64_t>::min()}) {
    EXPECT_FALSE(fromRawValue<Type>(number)) << number;
  }
}

TEST_F(WebViewSwitchTypeTest, setUrlWritesTheSettingOfTheRowAndNothingElse) {
  for (const auto& row : viewRows) {
    const auto before = platform_.userDefaults.stored();
    const auto text = "https://example.org/" + std::to_string(row.number);
    setUrl(row.type, text);
    auto expected = before;
    if (row.written) expected.insert_or_assign(std::string(rawValue(*row.written)), text);
    EXPECT_EQ(platform_.userDefaults.stored(), expected) << row.number;
  }
}

TEST_F(WebViewSwitchTypeTest, aFreshInstallationOpensTheBuiltInAddress) {
  for (const auto& row : viewRows) {
    if (row.type == Type::onboarding) continue;
    EXPECT_EQ(getUrl(row.type).absoluteString(), row.address);
  }
}

TEST_F(WebViewSwitchTypeTest, aWebViewOpensItsStoredAddress) {
  for (const auto& row : viewRows) {
    if (!isWebView(row.type)) continue;
    for (const char* text : {"https://example.org/x", "foo"}) {
      setUrl(row.type, text);
      EXPECT_EQ(getUrl(row.type).absoluteString(), text);
    }
  }
}

TEST_F(WebViewSwitchTypeTest, aClearedOrWronglyTypedAddressOpensTheBuiltInOne) {
  for (const auto& row : viewRows) {
    if (!isWebView(row.type)) continue;
    setUrl(row.type, "");
    EXPECT_EQ(getUrl(row.type).absoluteString(), row.address);
    UserDefaultsHelper().set(5, row.setting);
    EXPECT_EQ(getUrl(row.type).absoluteString(), row.address);
  }
}

TEST_F(WebViewSwitchTypeTest, pagesOpenTheBuiltInChatAddressWhateverIsStored) {
  setUrl(Type::chatgpt, "https://example.org/");
  for (const auto type : {Type::markdown, Type::releaseNotes, Type::editUrls, Type::search}) {
    EXPECT_EQ(getUrl(type).absoluteString(), chat);
  }
}

TEST_F(WebViewSwitchTypeTest, anAddressThatDoesNotParseIsFatal) {
  setUrl(Type::bard, "Enter Url");
  EXPECT_EXIT(getUrl(Type::bard), testing::ExitedWithCode(platform::fatalErrorExitCode),
              "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(WebViewSwitchTypeTest, theOnboardingsPlaceholderIsNoAddress) {
  EXPECT_EXIT(getUrl(Type::onboarding), testing::ExitedWithCode(platform::fatalErrorExitCode),
              "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(WebViewSwitchTypeTest, aViewIsFoundByItsNameInTheCatalogue) {
  const std::pair<std::string_view, Type> names[] = {{"chatgpt", Type::chatgpt},
                                                     {"bard", Type::bard},
                                                     {"bitbucket", Type::bitbucket},
                                                     {"gitlab", Type::gitlab},
                                                     {"hemingway", Type::hemingway},
                                                     {"jira", Type::jira},
                                                     {"markdown", Type::markdown},
                                                     {"onboarding", Type::onboarding},
                                                     {"releaseNotes", Type::releaseNotes},
                                                     {"editUrls", Type::editUrls},
                                                     {"search", Type::search}};
  for (const auto& [name, type] : names) EXPECT_EQ(fromCaseName(name), type) << name;
  for (const auto* name : {"", "ChatGPT", "jira ", "0", "release-notes"})
    EXPECT_EQ(fromCaseName(name), std::nullopt);
}

}  // namespace
}  // namespace velkin
