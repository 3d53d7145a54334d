#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/EasterEggItem.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

using Item = EasterEggItem;

struct EggRow {
  Item item;
  std::string_view title;
  std::string_view keyString;
  std::string_view key;
  std::string_view address;
};

constexpr EggRow eggRows[] = {
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
  ASSERT_EQ(std::size(eggRows), allEasterEggItems.size());
  for (std::size_t i = 0; i < std::size(eggRows); ++i) {
    EXPECT_EQ(allEasterEggItems[i], eggRows[i].item);
    EXPECT_EQ(title(eggRows[i].item), eggRows[i].title);
    EXPECT_EQ(keyString(eggRows[i].item), eggRows[i].keyString);
  }
}

TEST_F(EasterEggItemTest, withNothingStoredTheBuiltInAddressIsRead) {
  for (const auto& row : eggRows) EXPECT_EQ(url(row.item), row.address) << row.title;
}

TEST_F(EasterEggItemTest, anItemWritesItsKeyAndReadsItBack) {
  for (const auto& row : eggRows) {
    setUrl(row.item, "https://example.org/");
    EXPECT_EQ(platform_.userDefaults.stringForKey(row.key), "https://example.org/");
    EXPECT_EQ(url(row.item), "https://example.org/");
  }
  EXPECT_EQ(platform_.userDefaults.stored().size(), std::size(eggRows));
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
