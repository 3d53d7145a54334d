#include "Platform/Headless/HeadlessPlatform.h"
#include "extenstions/URLReachable.h"
#include "gtest/gtest.h"

#include <optional>
#include <thread>

namespace velkin {
namespace {

using platform::HeadlessURLSession;

class URLReachableTest : public testing::Test {
 protected:
  std::optional<bool> reachable(HeadlessURLSession::Answer answer) {
    const auto address = "https://example.org/" + std::to_string(count_++);
    platform_.urlSession.addAnswer(address, std::move(answer));
    std::optional<bool> result;
    isReachable(*platform::URL::parse(address), [&](bool isReachable) { result = isReachable; });
    return result;
  }

  platform::HeadlessPlatform platform_;
  int count_ = 0;
};

TEST_F(URLReachableTest, onlyTheStatus200IsReachable) {
  EXPECT_EQ(reachable({.statusCode = 200}), true);
  for (const int status : {100, 199, 201, 204, 301, 302, 401, 404, 500}) {
    EXPECT_EQ(reachable({.statusCode = status}), false) << status;
  }
}

TEST_F(URLReachableTest, anErrorOrAnAnswerThatIsNotHTTPIsNotReachable) {
  EXPECT_EQ(reachable({.error = platform::NSError{"NSURLErrorDomain", -1001, "timed out"}}), false);
  EXPECT_EQ(reachable({.isHTTP = false}), false);
}

TEST_F(URLReachableTest, oneHEADRequestIsSent) {
  reachable({});
  const auto requests = platform_.urlSession.requests();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].httpMethod, "HEAD");
  EXPECT_EQ(requests[0].timeoutInterval, 60);
  EXPECT_EQ(requests[0].cachePolicy, platform::NSURLRequestCachePolicy::useProtocolCachePolicy);
  EXPECT_EQ(requests[0].url.absoluteString(), "https://example.org/0");
}

TEST_F(URLReachableTest, theCompletionRunsOnTheSessionsThread) {
  platform_.urlSession.setDelivery(HeadlessURLSession::Delivery::background);
  platform_.urlSession.addAnswer("https://example.org/", {});
  std::thread::id thread;
  isReachable(*platform::URL::parse("https://example.org/"),
              [&](bool) { thread = std::this_thread::get_id(); });
  platform_.urlSession.waitUntilDelivered();
  EXPECT_NE(thread, std::thread::id());
  EXPECT_NE(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace velkin
