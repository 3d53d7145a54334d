#include "Platform/CrashReloadPolicy.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CrashReloadPolicyTest, ReloadsThreeTimesAMinuteAtTheMost) {
  CrashReloadPolicy policy;
  EXPECT_TRUE(policy.shouldReload(100));
  EXPECT_TRUE(policy.shouldReload(110));
  EXPECT_TRUE(policy.shouldReload(120));
  EXPECT_FALSE(policy.shouldReload(130));
  EXPECT_FALSE(policy.shouldReload(159.9));
}

TEST(CrashReloadPolicyTest, ReloadsAgainOnceTheMinuteIsOver) {
  CrashReloadPolicy policy;
  for (const double time : {100.0, 110.0, 120.0}) ASSERT_TRUE(policy.shouldReload(time));
  EXPECT_TRUE(policy.shouldReload(160));
  EXPECT_FALSE(policy.shouldReload(161));
  EXPECT_TRUE(policy.shouldReload(170));
}

}  // namespace
}  // namespace platform
