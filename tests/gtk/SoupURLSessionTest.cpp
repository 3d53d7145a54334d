#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/SoupURLSession.h"
#include "gtk/LoopbackServer.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {
namespace {

class SoupURLSessionTest : public testing::Test {
 protected:
  struct Outcome {
    int calls = 0;
    std::optional<std::string> data;
    std::optional<HTTPURLResponse> response;
    std::optional<NSError> error;
    std::thread::id thread;
  };

  static URLRequest requestTo(const LoopbackServer& server) {
    return {.url = *URL::parse(server.address("/v1/ask?x=1"))};
  }

  /// Sends and waits for the completion.
  Outcome ask(const URLRequest& request) {
    auto task = start(request);
    return wait();
  }

  std::unique_ptr<NSURLSessionDataTask> start(const URLRequest& request) {
    return session.dataTask(request, [this](auto data, auto response, auto error) {
      const std::lock_guard lock(mutex);
      ++outcome.calls;
      outcome.data = std::move(data);
      outcome.response = std::move(response);
      outcome.error = std::move(error);
      outcome.thread = std::this_thread::get_id();
      done.notify_all();
    });
  }

  Outcome wait() {
    std::unique_lock lock(mutex);
    done.wait_for(lock, std::chrono::seconds(60), [this] { return outcome.calls > 0; });
    return std::exchange(outcome, {});
  }

  std::mutex mutex;
  std::condition_variable done;
  Outcome outcome;
  SoupURLSession session;
};

TEST_F(SoupURLSessionTest, ThePostOnTheWireIsTheRequest) {
  const LoopbackServer server([](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(200, "well"));
  });
  auto request = requestTo(server);
  request.httpMethod = "POST";
  request.allHTTPHeaderFields = {{"Content-Type", "application/json"}, {"Authorization", "Bearer  key ä "}};
  request.httpBody = std::string("{\"a\": \"\0\n\xC3\xA4\"}", 13);
  const auto told = ask(request);
  EXPECT_EQ(told.data, "well");
  ASSERT_TRUE(told.response);
  EXPECT_EQ(told.response->statusCode, 200);
  EXPECT_FALSE(told.error);
  const auto seen = server.requests();
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_TRUE(seen[0].starts_with("POST /v1/ask?x=1 HTTP/1.1\r\n")) << seen[0];
  EXPECT_NE(seen[0].find("\r\nContent-Type: application/json\r\n"), std::string::npos) << seen[0];
  EXPECT_NE(seen[0].find("\r\nAuthorization: Bearer  key ä \r\n"), std::string::npos) << seen[0];
  EXPECT_TRUE(seen[0].ends_with("\r\n\r\n" + request.httpBody)) << seen[0];
}

TEST_F(SoupURLSessionTest, TheCompletionRunsOnceOnAnotherThread) {
  const LoopbackServer server([](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(204, ""));
  });
  const auto told = ask(requestTo(server));
  EXPECT_EQ(told.calls, 1);
  EXPECT_NE(told.thread, std::this_thread::get_id());
  EXPECT_EQ(told.response->statusCode, 204);
}

TEST_F(SoupURLSessionTest, AnErrorStatusIsAnAnswerWithItsBody) {
  for (const int status : {400, 401, 403, 404, 429, 500, 503}) {
    const LoopbackServer server([status](int connection, const std::string&) {
      LoopbackServer::send(connection, LoopbackServer::answer(status, "no"));
    });
    const auto told = ask(requestTo(server));
    ASSERT_TRUE(told.response) << status;
    EXPECT_EQ(told.response->statusCode, status);
    EXPECT_EQ(told.data, "no");
    EXPECT_FALSE(told.error);
  }
}

TEST_F(SoupURLSessionTest, AnAnswerInDrizzleArrivesWhole) {
  const LoopbackServer server([](int connection, const std::string&) {
    for (const char c : LoopbackServer::answer(200, "slowly")) {
      LoopbackServer::send(connection, std::string(1, c));
      ::usleep(1000);
    }
  });
  EXPECT_EQ(ask(requestTo(server)).data, "slowly");
}

TEST_F(SoupURLSessionTest, ABodyThatIsCutOffIsAnError) {
  const LoopbackServer server([](int connection, const std::string&) {
    auto whole = LoopbackServer::answer(200, std::string(1000, 'x'));
    whole.resize(whole.size() - 500);
    LoopbackServer::send(connection, whole);
  });
  const auto told = ask(requestTo(server));
  ASSERT_TRUE(told.error);
  EXPECT_EQ(told.error->domain, NSURLErrorDomain);
  EXPECT_EQ(told.error->code, NSURLErrorNetworkConnectionLost);
  EXPECT_FALSE(told.error->localizedDescription.empty());
  EXPECT_FALSE(told.data);
}

TEST_F(SoupURLSessionTest, AResetConnectionIsAnErrorAndThePostIsNotSentAgain) {
  const LoopbackServer server([](int connection, const std::string&) { LoopbackServer::reset(connection); });
  auto request = requestTo(server);
  request.httpMethod = "POST";
  request.httpBody = "{}";
  const auto told = ask(request);
  ASSERT_TRUE(told.error);
  EXPECT_EQ(told.error->code, NSURLErrorNetworkConnectionLost);
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(SoupURLSessionTest, WhatIsNoHttpIsAnError) {
  const LoopbackServer server(
      [](int connection, const std::string&) { LoopbackServer::send(connection, "hello?\r\n\r\n"); });
  EXPECT_TRUE(ask(requestTo(server)).error);
}

TEST_F(SoupURLSessionTest, AServerThatNeverAnswersIsTimedOut) {
  std::mutex gate;
  gate.lock();
  const LoopbackServer server([&gate](int, const std::string&) { const std::lock_guard held(gate); });
  auto request = requestTo(server);
  request.timeoutInterval = 0.2;
  const auto told = ask(request);
  ASSERT_TRUE(told.error);
  EXPECT_EQ(told.error->code, NSURLErrorTimedOut);
  EXPECT_EQ(told.error->localizedDescription, "The request timed out.");
  gate.unlock();
}

TEST_F(SoupURLSessionTest, NobodyThereIsAnError) {
  URLRequest request{.url = *URL::parse("http://127.0.0.1:1/")};
  const auto told = ask(request);
  ASSERT_TRUE(told.error);
  EXPECT_EQ(told.error->code, NSURLErrorCannotConnectToHost);
}

TEST_F(SoupURLSessionTest, SixteenMegabytesArriveAndOneByteMoreDoesNot) {
  const std::string body(16U << 20U, 'y');
  const LoopbackServer server([&body](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(200, body));
  });
  auto told = ask(requestTo(server));
  ASSERT_TRUE(told.data);
  EXPECT_EQ(told.data->size(), body.size());
  EXPECT_TRUE(*told.data == body);
  const LoopbackServer longer([&body](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(200, body + 'y'));
  });
  told = ask(requestTo(longer));
  EXPECT_FALSE(told.data);
  EXPECT_FALSE(told.response);
  EXPECT_EQ(told.error,
            (NSError{NSURLErrorDomain, NSURLErrorDataLengthExceedsMaximum, "The answer is too long."}));
}

TEST_F(SoupURLSessionTest, ARequestMaySayHowMuchItTakes) {
  const LoopbackServer server([](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(200, "four"));
  });
  auto request = requestTo(server);
  request.longestAnswer = 4;
  EXPECT_EQ(ask(request).data, "four");
  request.longestAnswer = 3;
  EXPECT_EQ(ask(request).error->code, NSURLErrorDataLengthExceedsMaximum);
}

TEST_F(SoupURLSessionTest, ABodyWithoutAnEndIsRefusedAndReadNoFurther) {
  std::atomic<std::size_t> sent = 0;
  const LoopbackServer server([&sent](int connection, const std::string&) {
    LoopbackServer::send(connection, "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    const std::string some(1U << 20U, 'y');
    // Ends when the other side closes.
    while (::send(connection, some.data(), some.size(), MSG_NOSIGNAL) > 0) sent += some.size();
  });
  EXPECT_EQ(ask(requestTo(server)).error->code, NSURLErrorDataLengthExceedsMaximum);
  EXPECT_LT(sent.load(), 64U << 20U);
}

/// A body that is small on the way and far too large when it is unpacked.
std::string packedZeros(std::size_t megabytes) {
  const auto packer =
      GObjectPtr<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 9));
  const std::string zeros(megabytes << 20U, 'z');
  std::string packed(zeros.size() / 500 + 1024, 0);
  gsize read = 0;
  gsize written = 0;
  const auto result =
      g_converter_convert(G_CONVERTER(packer.get()), zeros.data(), zeros.size(), packed.data(), packed.size(),
                          G_CONVERTER_INPUT_AT_END, &read, &written, nullptr);
  EXPECT_EQ(result, G_CONVERTER_FINISHED);
  packed.resize(written);
  return packed;
}

TEST_F(SoupURLSessionTest, WhatCountsIsTheUnpackedText) {
  const auto small = packedZeros(15);
  const auto bomb = packedZeros(200);
  ASSERT_LT(bomb.size(), 1U << 20U);
  const LoopbackServer server([&](int connection, const std::string& request) {
    const auto& body = request.starts_with("HEAD")           ? std::string()
                       : request.find("x=1") != request.npos ? bomb
                                                             : small;
    LoopbackServer::send(connection, LoopbackServer::answer(200, body, "Content-Encoding: gzip\r\n"));
  });
  EXPECT_EQ(ask(requestTo(server)).error->code, NSURLErrorDataLengthExceedsMaximum);
  const auto told = ask({.url = *URL::parse(server.address("/small"))});
  ASSERT_TRUE(told.data) << description(*told.error);
  EXPECT_EQ(told.data->size(), 15U << 20U);
}

TEST_F(SoupURLSessionTest, RequestsThatHangHoldUpNone) {
  std::mutex gate;
  gate.lock();
  std::atomic<int> hanging = 0;
  const LoopbackServer server([&](int connection, const std::string& request) {
    if (request.starts_with("GET /hang")) {
      ++hanging;
      const std::lock_guard held(gate);
    } else {
      LoopbackServer::send(connection, LoopbackServer::answer(200, "quick"));
    }
  });
  std::atomic<int> ended = 0;
  for (int i = 0; i < 20; ++i) {
    session.dataTask({.url = *URL::parse(server.address("/hang"))}, [&](auto, auto, auto) { ++ended; });
  }
  EXPECT_EQ(ask(requestTo(server)).data, "quick");
  EXPECT_EQ(ended.load(), 0);
  while (hanging < 20) ::usleep(1000);
  gate.unlock();
  while (ended < 20) ::usleep(1000);
}

TEST_F(SoupURLSessionTest, AHeaderCannotBringInAnother) {
  const LoopbackServer server([](int connection, const std::string&) {
    LoopbackServer::send(connection, LoopbackServer::answer(200, ""));
  });
  for (const auto& key :
       {std::string("a\r\nX-Evil: 1"), std::string("a\nX-Evil: 1"), std::string("a\0b", 3)}) {
    auto request = requestTo(server);
    request.allHTTPHeaderFields = {{"Authorization", "Bearer " + key}, {"X-Good", "1"}};
    EXPECT_TRUE(ask(request).response);
  }
  for (const auto& seen : server.requests()) {
    EXPECT_EQ(seen.find("X-Evil"), std::string::npos) << seen;
    EXPECT_EQ(seen.find("Authorization"), std::string::npos) << seen;
    EXPECT_NE(seen.find("X-Good: 1"), std::string::npos) << seen;
  }
}

TEST_F(SoupURLSessionTest, ACancelledTaskEndsWithItsError) {
  std::mutex gate;
  gate.lock();
  const LoopbackServer server([&gate](int, const std::string&) { const std::lock_guard held(gate); });
  const auto task = start(requestTo(server));
  task->cancel();
  const auto told = wait();
  ASSERT_TRUE(told.error);
  EXPECT_EQ(told.error->code, NSURLErrorCancelled);
  gate.unlock();
}

}  // namespace
}  // namespace platform
