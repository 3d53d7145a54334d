#include "Values/AppearanceFontSize.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

struct FontSizeRow {
  AppearanceFontSize size;
  double zoom;
  std::string_view label;
};

constexpr FontSizeRow fontSizeRows[] = {{AppearanceFontSize::largest, 1.45, "Larger"},
                                        {AppearanceFontSize::larger, 1.2, " -- "},
                                        {AppearanceFontSize::normal, 1.0, "Default"},
                                        {AppearanceFontSize::smaller, 0.8, " -- "},
                                        {AppearanceFontSize::smallest, 0.55, "Smaller"}};

TEST(AppearanceFontSizeTest, everyStepHasItsNumberAndLabelInOrder) {
  ASSERT_EQ(std::size(fontSizeRows), allAppearanceFontSizes.size());
  for (std::size_t i = 0; i < std::size(fontSizeRows); ++i) {
    EXPECT_EQ(allAppearanceFontSizes[i], fontSizeRows[i].size);
    EXPECT_EQ(rawValue(fontSizeRows[i].size), fontSizeRows[i].zoom);
    EXPECT_EQ(stringValue(fontSizeRows[i].size), fontSizeRows[i].label);
    EXPECT_EQ(fromRawValue<AppearanceFontSize>(fontSizeRows[i].zoom), fontSizeRows[i].size);
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
