#include "Values/AppearanceHeight.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

struct HeightRow {
  AppearanceHeight height;
  double points;
  std::string_view label;
};

constexpr HeightRow heightRows[] = {{AppearanceHeight::shortHeight, 480, "Short"},
                                    {AppearanceHeight::medium, 600, "Medium"},
                                    {AppearanceHeight::tall, 980, "Tall"},
                                    {AppearanceHeight::giant, 1240, "Giant"},
                                    {AppearanceHeight::full, 2160, "Full"}};

TEST(AppearanceHeightTest, everyStepHasItsNumberAndLabelInOrder) {
  ASSERT_EQ(std::size(heightRows), allAppearanceHeights.size());
  for (std::size_t i = 0; i < std::size(heightRows); ++i) {
    EXPECT_EQ(allAppearanceHeights[i], heightRows[i].height);
    EXPECT_EQ(rawValue(heightRows[i].height), heightRows[i].points);
    EXPECT_EQ(stringValue(heightRows[i].height), heightRows[i].label);
    EXPECT_EQ(fromRawValue<AppearanceHeight>(heightRows[i].points), heightRows[i].height);
  }
}

TEST(AppearanceHeightTest, theEarlierStepIsTall) {
  EXPECT_EQ(fromRawValue<AppearanceHeight>(740.0), AppearanceHeight::tall);
}

TEST(AppearanceHeightTest, everyOtherNumberIsMedium) {
  for (const double points : {123.0, 0.0, -480.0, 460.0, 2116.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(fromRawValue<AppearanceHeight>(points), AppearanceHeight::medium) << points;
  }
}

TEST(AppearanceHeightTest, sizesFollowFromTheNumber) {
  for (const auto& row : heightRows) {
    EXPECT_EQ(windowSize(row.height), row.points);
    EXPECT_DOUBLE_EQ(previewSize(row.height), row.points / 10);
  }
}

}  // namespace
}  // namespace velkin
