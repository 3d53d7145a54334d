#include "Platform/Gtk/GtkMainQueue.h"
#include "gtk/GtkFixture.h"

#include <thread>

namespace platform {
namespace {

class GtkMainQueueTest : public GtkFixture {
 protected:
  GtkMainQueue queue;
  std::vector<int> done;
};

TEST_F(GtkMainQueueTest, workOfAnotherThreadRunsOnTheMainOneInItsOrder) {
  std::vector<int> written;
  bool isOnMainThread = true;
  std::thread other([&] {
    EXPECT_FALSE(queue.isCurrent());
    for (int i = 0; i < 100; ++i) {
      written.push_back(i);
      queue.async([this, &isOnMainThread, copy = written] {
        isOnMainThread = isOnMainThread && queue.isCurrent();
        done.push_back(copy.back());
      });
    }
  });
  EXPECT_TRUE(wait([this] { return done.size() == 100; }));
  other.join();
  EXPECT_TRUE(isOnMainThread);
  EXPECT_EQ(done, written);
}

TEST_F(GtkMainQueueTest, whatIsAddedByWorkRunsInALaterTurn) {
  queue.async([this] {
    queue.async([this] { done.push_back(3); });
    done.push_back(1);
  });
  queue.async([this] { done.push_back(2); });
  EXPECT_TRUE(done.empty());
  turn();
  EXPECT_EQ(done, (std::vector{1, 2, 3}));
}

TEST_F(GtkMainQueueTest, aTimerRunsOnceUnlessItIsInvalidatedOrGoes) {
  const auto kept = queue.timer(0.01, [this] { done.push_back(1); });
  const auto invalidated = queue.timer(0.01, [this] { done.push_back(2); });
  queue.timer(0.01, [this] { done.push_back(3); });
  invalidated->invalidate();
  queue.asyncAfter(0.1, [this] { done.push_back(4); });
  EXPECT_TRUE(wait([this] { return done.size() == 2; }));
  EXPECT_EQ(done, (std::vector{1, 4}));
}

TEST_F(GtkMainQueueTest, aTimerMayEndItself) {
  std::unique_ptr<Timer> timer;
  timer = queue.timer(0, [&] {
    timer.reset();
    done.push_back(1);
  });
  EXPECT_TRUE(wait([this] { return !done.empty(); }));
  EXPECT_EQ(timer, nullptr);
}

}  // namespace
}  // namespace platform
