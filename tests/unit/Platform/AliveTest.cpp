#include "Platform/Alive.h"
#include "Platform/Connection.h"

#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(AliveTest, AWatchKnowsOfTheOwnersEnd) {
  auto owner = std::make_unique<Alive>();
  const auto watch = owner->watch();
  EXPECT_TRUE(watch);
  owner.reset();
  EXPECT_FALSE(watch);
}

TEST(AliveTest, CanEndBeforeItsOwner) {
  Alive owner;
  const auto watch = owner.watch();
  const auto later = [copy = watch] { return static_cast<bool>(copy); };
  EXPECT_TRUE(later());
  owner.end();
  EXPECT_FALSE(watch);
  EXPECT_FALSE(later());
  EXPECT_FALSE(owner.watch());
}

TEST(ConnectionTest, KeepsWhatIsAttachedForAsLongAsItLives) {
  auto attached = std::make_shared<const int>(7);
  const std::weak_ptr known = attached;
  Connection connection(std::move(attached));
  EXPECT_TRUE(connection);
  auto moved = std::move(connection);
  EXPECT_FALSE(known.expired());
  moved.end();
  EXPECT_TRUE(known.expired());
  EXPECT_FALSE(moved);
}

TEST(ConnectionTest, TellsOnceThatItEnded) {
  int ends = 0;
  {
    auto connection = Connection::endingWith([&] { ++ends; });
    EXPECT_TRUE(connection);
    connection.end();
    EXPECT_EQ(ends, 1);
    connection.end();
  }
  EXPECT_EQ(ends, 1);
  {
    const auto second = Connection::endingWith([&] { ++ends; });
  }
  EXPECT_EQ(ends, 2);
}

TEST(ConnectionTest, AnotherInItsPlaceEndsIt) {
  int ends = 0;
  auto connection = Connection::endingWith([&] { ++ends; });
  connection = Connection();
  EXPECT_EQ(ends, 1);
  EXPECT_FALSE(connection);
}

TEST(ConnectionTest, MayEndWhileItsEndIsTold) {
  Connection connection;
  int ends = 0;
  connection = Connection::endingWith([&] {
    ++ends;
    connection.end();
  });
  connection.end();
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace platform
