#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSUserDefaults.h"
#include "gtest/gtest.h"

#include <cmath>
#include <limits>
#include <thread>

namespace platform {
namespace {

class NSUserDefaultsTest : public testing::Test {
 protected:
  HeadlessPlatform platform_;
  NSUserDefaults& defaults_ = NSUserDefaults::standardUserDefaults();
};

TEST_F(NSUserDefaultsTest, theStandardDomainIsThePlatforms) {
  EXPECT_EQ(&defaults_, &platform_.userDefaults);
}

TEST_F(NSUserDefaultsTest, anAbsentKeyReadsAsNothing) {
  EXPECT_FALSE(defaults_.valueForKey("k"));
  EXPECT_FALSE(defaults_.stringForKey("k"));
  EXPECT_FALSE(defaults_.boolForKey("k"));
  EXPECT_EQ(defaults_.integerForKey("k"), 0);
  EXPECT_EQ(defaults_.floatForKey("k"), 0.0F);
}

TEST_F(NSUserDefaultsTest, aStoredValueComesBack) {
  defaults_.setObject("text", "s");
  defaults_.setObject(true, "b");
  defaults_.setObject(23, "i");
  defaults_.setObject(1.45, "f");
  EXPECT_EQ(defaults_.stringForKey("s"), "text");
  EXPECT_TRUE(defaults_.boolForKey("b"));
  EXPECT_EQ(defaults_.integerForKey("i"), 23);
  EXPECT_EQ(defaults_.floatForKey("f"), 1.45F);
  EXPECT_EQ(defaults_.valueForKey("f"), PropertyListValue(1.45));
}

TEST_F(NSUserDefaultsTest, floatsAreReadInSinglePrecision) {
  defaults_.setObject(1.2, "f");
  EXPECT_EQ(static_cast<double>(defaults_.floatForKey("f")), static_cast<double>(1.2F));
  EXPECT_NE(static_cast<double>(defaults_.floatForKey("f")), 1.2);
}

TEST_F(NSUserDefaultsTest, integersAndRealsAreNumbersForEachOther) {
  defaults_.setObject(600, "i");
  defaults_.setObject(1'700'000'000.9, "r");
  defaults_.setObject(-2.9, "n");
  EXPECT_EQ(defaults_.floatForKey("i"), 600.0F);
  EXPECT_EQ(defaults_.integerForKey("r"), 1'700'000'000);
  EXPECT_EQ(defaults_.integerForKey("n"), -2) << "truncated, not floored";
}

TEST_F(NSUserDefaultsTest, anIntegerOutOfARealThatHasNoneIsZero) {
  for (const double real :
       {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), 1e19,
        -1e19, 9'223'372'036'854'775'808.0}) {
    defaults_.setObject(real, "r");
    EXPECT_EQ(defaults_.integerForKey("r"), 0) << real;
  }
  defaults_.setObject(-9'223'372'036'854'775'808.0, "r");
  EXPECT_EQ(defaults_.integerForKey("r"), std::numeric_limits<std::int64_t>::min());
}

TEST_F(NSUserDefaultsTest, aFloatThatIsNotFiniteIsZero) {
  for (const double real : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300, -1e39}) {
    defaults_.setObject(real, "r");
    EXPECT_EQ(defaults_.floatForKey("r"), 0.0F) << real;
  }
}

TEST_F(NSUserDefaultsTest, aValueOfAnotherTypeReadsAsAbsent) {
  using Value = PropertyListValue;
  const Value all[] = {
      true, 1, 1.5, "1", Value::Data{1}, Value::Date{1}, Value::Array{1}, Value::Dictionary{{"a", 1}}};
  for (const auto& value : all) {
    defaults_.setObject(value, "k");
    const bool isNumber = value.as<std::int64_t>() != nullptr || value.as<double>() != nullptr;
    EXPECT_EQ(defaults_.boolForKey("k"), value.as<bool>() != nullptr);
    EXPECT_EQ(defaults_.stringForKey("k").has_value(), value.as<std::string>() != nullptr);
    EXPECT_EQ(defaults_.integerForKey("k"), isNumber ? 1 : 0);
    EXPECT_EQ(defaults_.floatForKey("k") != 0, isNumber);
  }
}

TEST_F(NSUserDefaultsTest, aRegisteredDefaultShowsWhereNothingIsStored) {
  defaults_.registerDefaults({{"b", true}, {"s", "registered"}});
  EXPECT_TRUE(defaults_.boolForKey("b"));
  EXPECT_EQ(defaults_.stringForKey("s"), "registered");
  EXPECT_EQ(defaults_.valueForKey("b"), PropertyListValue(true));
  defaults_.setObject(false, "b");
  EXPECT_FALSE(defaults_.boolForKey("b"));
  defaults_.removeObjectForKey("b");
  EXPECT_TRUE(defaults_.boolForKey("b"));
}

TEST_F(NSUserDefaultsTest, aRegisteredDefaultShowsThroughAStoredValueOfAnotherType) {
  defaults_.registerDefaults({{"b", true}});
  defaults_.setObject("no boolean", "b");
  EXPECT_TRUE(defaults_.boolForKey("b"));
}

TEST_F(NSUserDefaultsTest, registrationStoresNothing) {
  defaults_.registerDefaults({{"b", true}});
  EXPECT_TRUE(platform_.userDefaults.stored().empty());
  EXPECT_TRUE(platform_.userDefaults.changedKeys().empty());
}

TEST_F(NSUserDefaultsTest, aTextIsStoredAsItCanBeKept) {
  defaults_.setObject(std::string("a\0b", 3), "s");
  EXPECT_EQ(defaults_.stringForKey("s"),
            "a\xEF\xBF\xBD"
            "b");
}

TEST_F(NSUserDefaultsTest, everyOperationMayRunOnAnyThread) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, thread] {
      const auto key = "k" + std::to_string(thread);
      for (int i = 1; i <= 200; ++i) {
        defaults_.registerDefaults({{"shared", true}});
        defaults_.setObject(i, key);
        EXPECT_EQ(defaults_.integerForKey(key), i);
        EXPECT_TRUE(defaults_.boolForKey("shared"));
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(platform_.userDefaults.stored().size(), 4U);
}

}  // namespace
}  // namespace platform
