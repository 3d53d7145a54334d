#include "Helpers/SearchRequestHelper.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/ServiceAddresses.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace velkin {
namespace {

using platform::HeadlessURLSession;
using platform::HTTPURLResponse;
using platform::NSError;

class SearchRequestHelperTest : public testing::Test {
 protected:
  using Answer = HeadlessURLSession::Answer;

  struct Outcome {
    int calls = 0;
    std::optional<SearchRequestHelper::Result> result;
    std::thread::id thread;
  };

  void answer(Answer answer) {
    desktop.urlSession.addAnswer(std::string(serviceAddresses.chatCompletions), std::move(answer));
  }
  static std::string bodyWith(const std::string& content) {
    return nlohmann::json{{"choices", {{{"message", {{"role", "assistant"}, {"content", content}}}}}}}.dump();
  }
  Outcome ask(const std::string& prompt = "Why?", const std::string& key = "key") {
    Outcome outcome;
    SearchRequestHelper().chatGPTRequest(prompt, key, [&outcome](SearchRequestHelper::Result result) {
      ++outcome.calls;
      outcome.result = std::move(result);
      outcome.thread = std::this_thread::get_id();
    });
    desktop.urlSession.waitUntilDelivered();
    return outcome;
  }
  NSError errorOf(Answer a) {
    answer(std::move(a));
    const auto outcome = ask();
    EXPECT_EQ(outcome.calls, 1);
    if (!outcome.result || outcome.result->has_value()) {
      ADD_FAILURE() << "it succeeded";
      return {};
    }
    return outcome.result->error();
  }
  std::string answerOf(const std::string& body) {
    answer({.data = body});
    const auto outcome = ask();
    EXPECT_EQ(outcome.calls, 1);
    return outcome.result && outcome.result->has_value() ? **outcome.result : "failed";
  }

  platform::HeadlessPlatform desktop;
};

TEST_F(SearchRequestHelperTest, theRequestIsAPostWithTwoHeadersAndTheUsualTimeOut) {
  answer({.data = bodyWith("Because.")});
  ask("Why?", " my key ");
  const auto requests = desktop.urlSession.requests();
  ASSERT_EQ(requests.size(), 1U);
  const auto& request = requests.front();
  EXPECT_EQ(request.httpMethod, "POST");
  EXPECT_EQ(request.url.absoluteString(), serviceAddresses.chatCompletions);
  EXPECT_EQ(request.url.path(), "/v1/chat/completions");
  EXPECT_EQ(request.timeoutInterval, 60);
  EXPECT_EQ(request.cachePolicy, platform::NSURLRequestCachePolicy::useProtocolCachePolicy);
  const std::map<std::string, std::string> headers = {{"Content-Type", "application/json"},
                                                      {"Authorization", "Bearer  my key "}};
  EXPECT_EQ(request.allHTTPHeaderFields, headers) << "the key goes out as it is stored";
}

TEST_F(SearchRequestHelperTest, theBodyHasItsThreeFieldsAndIsCompact) {
  const auto body = SearchRequestHelper::body("Why?");
  EXPECT_EQ(nlohmann::json::parse(body), nlohmann::json::parse(R"({
    "model": "gpt-3.5-turbo", "temperature": 0.3, "messages": [{"role": "user", "content": "Why?"}]})"));
  EXPECT_EQ(body.find_first_of(" \n"), std::string::npos);
}

TEST_F(SearchRequestHelperTest, everyPromptReachesTheServiceUnchanged) {
  const std::vector<std::string> prompts = {"\"quotes\" and \\ back",
                                            "two\nlines\r\n\tand a tab",
                                            "äöü — 日本語 🧭 👩‍👩‍👧",
                                            std::string("a\0b", 3),
                                            "</script><b>",
                                            " blanks "};
  for (const auto& prompt : prompts) {
    const auto body = nlohmann::json::parse(SearchRequestHelper::body(prompt));
    EXPECT_EQ(body["messages"][0]["content"].get<std::string>(), prompt);
  }
}

TEST_F(SearchRequestHelperTest, anEmptyKeyGoesOutToo) {
  answer({.statusCode = 401, .data = "{}"});
  ask("Why?", "");
  EXPECT_EQ(desktop.urlSession.requests().front().allHTTPHeaderFields.at("Authorization"), "Bearer ");
}

TEST_F(SearchRequestHelperTest, theAnswerIsTrimmedAtBothEnds) {
  EXPECT_EQ(answerOf(bodyWith("  one\n two \n")), "one\n two");
}

TEST_F(SearchRequestHelperTest, whiteSpaceOfEveryKindIsTrimmed) {
  EXPECT_EQ(answerOf(bodyWith("\t\r\n\v\f\u0085\u00A0\u2003\u2028\u3000x\u200B\u202F")), "x");
}

TEST_F(SearchRequestHelperTest, anAnswerOfWhiteSpaceIsASuccessWithNothing) {
  EXPECT_EQ(answerOf(bodyWith(" \n\t ")), "");
}

TEST_F(SearchRequestHelperTest, onlyTheFirstChoiceCountsAndOtherFieldsAreIgnored) {
  EXPECT_EQ(answerOf(R"({"id": 7, "choices": [{"index": 0, "message": {"content": "first"}},
                                              {"message": {"content": "second"}}], "usage": {}})"),
            "first");
}

TEST_F(SearchRequestHelperTest, aTransportErrorIsHandedOnAsItIs) {
  const NSError lost{platform::NSURLErrorDomain, platform::NSURLErrorNetworkConnectionLost,
                     "The line is dead."};
  EXPECT_EQ(errorOf({.statusCode = 500, .error = lost}), lost);
}

TEST_F(SearchRequestHelperTest, noDataIsAFailureOfItsOwn) {
  EXPECT_EQ(errorOf({.statusCode = 500, .data = std::nullopt}), (NSError{"No data received", -1}));
}

TEST_F(SearchRequestHelperTest, everyStatusButTwoHundredIsAFailureWhateverTheBody) {
  for (const int status : {100, 201, 204, 301, 400, 401, 404, 429, 500, 503}) {
    const auto result = SearchRequestHelper::read(
        bodyWith("fine"),
        HTTPURLResponse{.statusCode = status, .url = *platform::URL::parse("https://example.org/")},
        std::nullopt);
    ASSERT_FALSE(result) << status;
    EXPECT_EQ(result.error(), (NSError{"HTTP Status Code: " + std::to_string(status), -1}));
  }
}

TEST_F(SearchRequestHelperTest, theBodyOfAnErrorIsNotRead) {
  EXPECT_EQ(errorOf({.statusCode = 401, .data = R"({"error": {"message": "bad key"}})"}),
            (NSError{"HTTP Status Code: 401", -1}));
}

TEST_F(SearchRequestHelperTest, anAnswerThatIsNotHttpIsParsedAtOnce) {
  answer({.data = bodyWith("read"), .isHTTP = false});
  EXPECT_EQ(**ask().result, "read");
}

TEST_F(SearchRequestHelperTest, whatIsNoJsonGivesTheParsersError) {
  for (const char* body : {"", "not json", "{\"choices\": [", "<html>", "{} {}"}) {
    const auto result = SearchRequestHelper::read(std::string(body), std::nullopt, std::nullopt);
    ASSERT_FALSE(result) << body;
    EXPECT_EQ(result.error().domain, platform::NSCocoaErrorDomain);
    EXPECT_EQ(result.error().code, 3840);
    EXPECT_FALSE(result.error().localizedDescription.empty());
  }
}

TEST_F(SearchRequestHelperTest, jsonOfAnotherShapeIsInvalid) {
  for (const char* body :
       {"[]", "7", "null", "{}", R"({"choices": {}})", R"({"choices": []})", R"({"choices": ["x"]})",
        R"({"choices": [{}]})", R"({"choices": [{"message": "x"}]})", R"({"choices": [{"message": {}}]})",
        R"({"choices": [{"message": {"content": 7}}]})", R"({"choices": [{"message": {"content": null}}]})",
        R"({"choices": [{"message": {"content": ["x"]}}]})",
        R"({"choices": [{"message": {"content": "first"}}, "x"]})",
        R"({"choices": [{"message": {"content": "first"}}, null]})",
        R"({"Choices": [{"message": {"content": "x"}}]})"}) {
    const auto result = SearchRequestHelper::read(std::string(body), std::nullopt, std::nullopt);
    ASSERT_FALSE(result) << body;
    EXPECT_EQ(result.error(), (NSError{"Invalid JSON", -1})) << body;
  }
}

TEST_F(SearchRequestHelperTest, aServiceThatNeverAnswersIsGivenSixtySeconds) {
  answer({.isSilent = true});
  int calls = 0;
  std::optional<NSError> error;
  SearchRequestHelper().chatGPTRequest("Why?", "key", [&](const SearchRequestHelper::Result& result) {
    ++calls;
    if (!result) error = result.error();
  });
  desktop.queue.advance(59.9);
  desktop.urlSession.waitUntilDelivered();
  EXPECT_EQ(calls, 0);
  desktop.queue.advance(0.1);
  desktop.urlSession.waitUntilDelivered();
  EXPECT_EQ(calls, 1);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, platform::NSURLErrorTimedOut);
}

TEST_F(SearchRequestHelperTest, theCompletionRunsOnTheSessionsThread) {
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::background);
  answer({.data = bodyWith("x")});
  const auto outcome = ask();
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_NE(outcome.thread, std::this_thread::get_id());
}

TEST_F(SearchRequestHelperTest, anErrorOfOurOwnIsPrintedWithItsWordsAsTheDomain) {
  EXPECT_EQ(description(NSError{"Invalid JSON", -1}), "Error Domain=Invalid JSON Code=-1 \"(null)\"");
  EXPECT_EQ(description(NSError{"NSURLErrorDomain", -1001, "The request timed out."}),
            "Error Domain=NSURLErrorDomain Code=-1001 \"The request timed out.\"");
}

}  // namespace
}  // namespace velkin
