#include "Values/AppearanceFontSize.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

struct Row {
  AppearanceFontSize size;
  double zoom;
  std::string_view label;
};

constexpr Row rows[] = {{AppearanceFontSize::largest, 1.45, "Larger"},
                        {AppearanceFontSize::larger, 1.2, " -- "},
                        {AppearanceFontSize::normal, 1.0, "Default"},
                        {AppearanceFontSize::smaller, 0.8, " -- "},
                        {AppearanceFontSize::smallest, 0.55, "Smaller"}};

TEST(AppearanceFontSizeTest, everyStepHasItsNumberAndLabelInOrder) {
  ASSERT_EQ(std::size(rows), allAppearanceFontSizes.size());
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(allAppearanceFontSizes[i], rows[i].size);
    EXPECT_EQ(rawValue(rows[i].size), rows[i].zoom);
    EXPECT_EQ(stringValue(rows[i].size), rows[i].label);
    EXPECT_EQ(fromRawValue<AppearanceFontSize>(rows[i].zoom), rows[i].size);
  }
}

TEST(AppearanceFontSizeTest, earlierStepsMapToACase) {
  EXPECT_EQ(fromRawValue<AppearanceFontSize>(1.3), AppearanceFontSize::largest);
  EXPECT_EQ(fromRawValue<AppearanceFontSize>(1.15), AppearanceFontSize::larger);
  EXPECT_EQ(fromRawValue<AppearanceFontSize>(0.85), AppearanceFontSize::smaller);
  EXPECT_EQ(fromRawValue<AppearanceFontSize>(0.6), AppearanceFontSize::smallest);
}

TEST(AppearanceFontSizeTest, everyOtherNumberIsNormal) {
  for (const double zoom : {0.0, 1.1, 0.9, -1.45, 145.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(fromRawValue<AppearanceFontSize>(zoom), AppearanceFontSize::normal) << zoom;
  }
}

}  // namespace
}  // namespace velkin
