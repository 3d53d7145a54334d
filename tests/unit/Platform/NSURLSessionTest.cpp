#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSURLSession.h"
#include "gtest/gtest.h"

#include <thread>

namespace platform {
namespace {

using Delivery = HeadlessURLSession::Delivery;

class NSURLSessionTest : public testing::Test {
 protected:
  struct Outcome {
    int calls = 0;
    std::optional<std::string> data;
    std::optional<HTTPURLResponse> response;
    std::optional<NSError> error;
    std::thread::id thread;
  };

  std::unique_ptr<NSURLSessionDataTask> ask(Outcome& outcome) {
    return NSURLSession::shared().dataTask(request_, [&outcome](auto data, auto response, auto error) {
      ++outcome.calls;
      outcome.data = data;
      outcome.response = response;
      outcome.error = error;
      outcome.thread = std::this_thread::get_id();
    });
  }

  HeadlessPlatform platform_;
  URLRequest request_{.url = *URL::parse("https://example.org/")};
};

TEST_F(NSURLSessionTest, aRequestHasThePlatformsDefaults) {
  EXPECT_EQ(request_.httpMethod, "GET");
  EXPECT_EQ(request_.timeoutInterval, 60);
  EXPECT_EQ(request_.cachePolicy, NSURLRequestCachePolicy::useProtocolCachePolicy);
  EXPECT_TRUE(request_.allHTTPHeaderFields.empty());
  EXPECT_TRUE(request_.httpBody.empty());
}

TEST_F(NSURLSessionTest, aScriptedAnswerArrivesAndTheRequestIsRecorded) {
  platform_.urlSession.addAnswer("https://example.org/",
                                 {.statusCode = 404, .data = "gone", .headers = {{"A", "b"}}});
  Outcome outcome;
  ask(outcome);
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(outcome.data, "gone");
  EXPECT_EQ(outcome.response, (HTTPURLResponse{404, {{"A", "b"}}, request_.url}));
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(platform_.urlSession.requests(), std::vector{request_});
}

TEST_F(NSURLSessionTest, answersFollowEachOtherAndTheLastStays) {
  platform_.urlSession.addAnswer("https://example.org/", {.statusCode = 500});
  platform_.urlSession.addAnswer("https://example.org/", {.statusCode = 200});
  for (const int status : {500, 200, 200}) {
    Outcome outcome;
    ask(outcome);
    EXPECT_EQ(outcome.response->statusCode, status);
  }
}

TEST_F(NSURLSessionTest, anAddressWithNoAnswerCannotBeConnectedTo) {
  Outcome outcome;
  ask(outcome);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->domain, NSURLErrorDomain);
  EXPECT_EQ(outcome.error->code, NSURLErrorCannotConnectToHost);
  EXPECT_FALSE(outcome.response);
}

TEST_F(NSURLSessionTest, aBackgroundAnswerRunsOnAnotherThread) {
  platform_.urlSession.addAnswer("https://example.org/", {});
  platform_.urlSession.setDelivery(Delivery::background);
  Outcome outcome;
  ask(outcome);
  platform_.urlSession.waitUntilDelivered();
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_NE(outcome.thread, std::this_thread::get_id());
}

TEST_F(NSURLSessionTest, aRequestThatNobodyAnswersEndsWhenItsTimeIsOver) {
  platform_.urlSession.addAnswer("https://example.org/", {.isSilent = true});
  request_.timeoutInterval = 25;
  Outcome outcome;
  ask(outcome);
  platform_.queue.advance(24.9);
  platform_.urlSession.waitUntilDelivered();
  EXPECT_EQ(outcome.calls, 0);
  platform_.queue.advance(0.1);
  platform_.urlSession.waitUntilDelivered();
  EXPECT_EQ(outcome.calls, 1);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->code, NSURLErrorTimedOut);
  EXPECT_FALSE(outcome.data);
}

TEST_F(NSURLSessionTest, aHeldRequestCanBeCancelled) {
  platform_.urlSession.addAnswer("https://example.org/", {});
  platform_.urlSession.setDelivery(Delivery::held);
  Outcome cancelled;
  Outcome kept;
  const auto task = ask(cancelled);
  ask(kept);
  EXPECT_EQ(cancelled.calls, 0);
  task->cancel();
  platform_.urlSession.deliver();
  EXPECT_EQ(cancelled.calls, 1);
  ASSERT_TRUE(cancelled.error);
  EXPECT_EQ(cancelled.error->code, NSURLErrorCancelled);
  EXPECT_FALSE(kept.error) << "a dropped task goes on";
  task->cancel();
  EXPECT_EQ(cancelled.calls, 1);
}

}  // namespace
}  // namespace platform
