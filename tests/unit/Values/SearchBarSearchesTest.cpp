#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/SearchBarSearches.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

class SearchBarSearchesTest : public testing::Test {
 protected:
  std::vector<std::string> prompts() const {
    std::vector<std::string> result;
    for (const auto& search : searches_) result.push_back(search.searchPrompt);
    return result;
  }

  platform::HeadlessPlatform platform_;
  std::vector<SearchBarSearch> searches_;
};

TEST_F(SearchBarSearchesTest, aNewSearchIsOfThePresentMoment) {
  platform_.queue.setNow(978'307'200 + 42.5);
  EXPECT_EQ(SearchBarSearch().date, 42.5);
  addSearch(searches_, "prompt", "<p>answer</p>");
  EXPECT_EQ(searches_, (std::vector<SearchBarSearch>{
                           {.date = 42.5, .searchPrompt = "prompt", .resultMarkdown = "<p>answer</p>"}}));
}

TEST_F(SearchBarSearchesTest, theEighthPromptPushesOutTheFirst) {
  for (int i = 1; i <= 8; ++i) EXPECT_TRUE(addSearch(searches_, std::to_string(i), "answer"));
  EXPECT_EQ(prompts(), (std::vector<std::string>{"2", "3", "4", "5", "6", "7", "8"}));
}

TEST_F(SearchBarSearchesTest, aRepeatedPromptChangesNothing) {
  addSearch(searches_, "one", "first answer");
  addSearch(searches_, "two", "answer");
  const auto before = searches_;
  platform_.queue.advance(60);
  EXPECT_FALSE(addSearch(searches_, "one", "new answer"));
  EXPECT_EQ(searches_, before);
}

TEST_F(SearchBarSearchesTest, aRepeatedPromptChangesNothingInAFullHistoryEither) {
  for (int i = 1; i <= 7; ++i) addSearch(searches_, std::to_string(i), "answer");
  EXPECT_FALSE(addSearch(searches_, "1", "answer"));
  EXPECT_EQ(prompts(), (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7"}));
}

TEST_F(SearchBarSearchesTest, caseAndBlanksMakeAnotherPrompt) {
  EXPECT_TRUE(addSearch(searches_, "Prompt", "a"));
  EXPECT_TRUE(addSearch(searches_, "prompt", "a"));
  EXPECT_TRUE(addSearch(searches_, "prompt ", "a"));
  EXPECT_EQ(searches_.size(), 3U);
}

TEST_F(SearchBarSearchesTest, aHistoryThatIsTooLongIsNotShortened) {
  for (int i = 1; i <= 9; ++i) searches_.push_back({.searchPrompt = std::to_string(i)});
  EXPECT_TRUE(addSearch(searches_, "new", "answer"));
  EXPECT_EQ(searches_.size(), 10U);
  EXPECT_EQ(searches_.front().searchPrompt, "1");
  EXPECT_EQ(searches_.back().searchPrompt, "new");
}

TEST_F(SearchBarSearchesTest, aSearchWithoutAResultDecodes) {
  const auto decoded = decodeSearchBarSearches(R"({"searches":[{"date":1,"searchPrompt":"p"}]})");
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->searches, (std::vector<SearchBarSearch>{{.date = 1, .searchPrompt = "p"}}));
  EXPECT_EQ(decodeSearchBarSearches(R"({"searches":[{"date":1,"searchPrompt":"p","resultMarkdown":null}]})"),
            *decoded);
}

TEST_F(SearchBarSearchesTest, oneBadSearchFailsTheWholeText) {
  const std::string good = R"({"date":1,"searchPrompt":"p"})";
  for (const std::string bad : {R"({"searchPrompt":"p"})", R"({"date":"1","searchPrompt":"p"})",
                                R"({"date":null,"searchPrompt":"p"})", R"({"date":true,"searchPrompt":"p"})",
                                R"({"date":1})", R"({"date":1,"searchPrompt":5})",
                                R"({"date":1,"searchPrompt":"p","resultMarkdown":5})", "5", "null", "[]"}) {
    EXPECT_FALSE(decodeSearchBarSearches("{\"searches\":[" + good + "," + bad + "]}")) << bad;
  }
}

TEST_F(SearchBarSearchesTest, whatIsNoHistoryFails) {
  for (const std::string text :
       {"", "x", "[]", "{}", "5", "{\"searches\":{}}", "{\"searches\":[]", "\xFF", "{\"Searches\":[]}"}) {
    EXPECT_FALSE(decodeSearchBarSearches(text)) << text;
  }
}

TEST_F(SearchBarSearchesTest, unknownKeysAndAnyOrderAreFine) {
  const auto decoded = decodeSearchBarSearches(
      R"({"more":1,"searches":[{"x":2,"resultMarkdown":"r","searchPrompt":"p\/q","date":7.5}]})");
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->searches,
            (std::vector<SearchBarSearch>{{.date = 7.5, .searchPrompt = "p/q", .resultMarkdown = "r"}}));
}

TEST_F(SearchBarSearchesTest, aTextNestedBeyondAllReasonFails) {
  EXPECT_FALSE(decodeSearchBarSearches(std::string(100'000, '[')));
  EXPECT_FALSE(decodeSearchBarSearches("{\"searches\":" + std::string(100'000, '[') +
                                       std::string(100'000, ']') + "}"));
}

TEST_F(SearchBarSearchesTest, AResultOfMoreThanAMegabyteIsKeptAsItsPromptAlone) {
  std::vector<SearchBarSearch> searches;
  ASSERT_TRUE(addSearch(searches, "longest", std::string(longestStoredResult, 'x')));
  ASSERT_TRUE(addSearch(searches, "too long", std::string(longestStoredResult + 1, 'x')));
  ASSERT_EQ(searches.size(), 2U);
  EXPECT_EQ(searches[0].resultMarkdown->size(), longestStoredResult);
  EXPECT_EQ(searches[1].searchPrompt, "too long");
  EXPECT_FALSE(searches[1].resultMarkdown);
}

TEST_F(SearchBarSearchesTest, ResultsThatAnEarlierVersionKeptGoWithTheNextSearch) {
  std::vector<SearchBarSearch> searches = {
      {.searchPrompt = "old", .resultMarkdown = std::string(9U << 20U, 'x')},
      {.searchPrompt = "small", .resultMarkdown = "y"}};
  ASSERT_TRUE(addSearch(searches, "new", "z"));
  EXPECT_FALSE(searches[0].resultMarkdown);
  EXPECT_EQ(searches[1].resultMarkdown, "y");
}

}  // namespace
}  // namespace velkin
