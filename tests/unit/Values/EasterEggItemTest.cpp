#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/EasterEggItem.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

using Item = EasterEggItem;

struct Row {
  Item item;
  std::string_view title;
  std::string_view keyString;
  std::string_view key;
  std::string_view address;
};

constexpr Row rows[] = {
    {Item::chatGPT, "AI", "⌘T", "chatUrl", "https://chat.openai.com/chat"},
    {Item::bard, "Bard", "⌘D", "bardUrl", "https://bard.google.com/"},
    {Item::bitBucket, "BitBucket", "⌘B", "bitUrl", "https://bitbucket.org/"},
    {Item::gitLab, "GitLab", "⌘G", "gitUrl", "https://gitlab.com/"},
    {Item::hemingway, "Hemingway", "⌘H", "hemingwayUrl", "https://hemingwayapp.com/"},
    {Item::jira, "Jira", "⌘J", "jiraUrl", "https://www.atlassian.com/software/jira"},
    {Item::search, "Search Bar (ApiKey)", "⌘⇧P", "searchBarKey", "https://chat.openai.com/chat"},
};

class EasterEggItemTest : public testing::Test {
 protected:
  platform::HeadlessPlatform platform_;
};

TEST_F(EasterEggItemTest, everyItemHasItsTexts) {
  ASSERT_EQ(std::size(rows), allEasterEggItems.size());
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(allEasterEggItems[i], rows[i].item);
    EXPECT_EQ(title(rows[i].item), rows[i].title);
    EXPECT_EQ(keyString(rows[i].item), rows[i].keyString);
  }
}

TEST_F(EasterEggItemTest, withNothingStoredTheBuiltInAddressIsRead) {
  for (const auto& row : rows) EXPECT_EQ(url(row.item), row.address) << row.title;
}

TEST_F(EasterEggItemTest, anItemWritesItsKeyAndReadsItBack) {
  for (const auto& row : rows) {
    setUrl(row.item, "https://example.org/");
    EXPECT_EQ(platform_.userDefaults.stringForKey(row.key), "https://example.org/");
    EXPECT_EQ(url(row.item), "https://example.org/");
  }
  EXPECT_EQ(platform_.userDefaults.stored().size(), std::size(rows));
}

TEST_F(EasterEggItemTest, anApiKeyNeedNotBeAnAddressAndMayBeEmpty) {
  setUrl(Item::search, "sk-key with blanks");
  EXPECT_EQ(url(Item::search), "sk-key with blanks");
  setUrl(Item::search, "");
  EXPECT_EQ(url(Item::search), "");
}

TEST_F(EasterEggItemTest, theChatsOwnAddressDoesNotChangeTheApiKeysDefault) {
  setUrl(Item::chatGPT, "https://example.org/");
  EXPECT_EQ(url(Item::search), "https://chat.openai.com/chat");
}

}  // namespace
}  // namespace velkin
