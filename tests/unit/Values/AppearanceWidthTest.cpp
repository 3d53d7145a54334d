#include "Values/AppearanceWidth.h"
#include "gtest/gtest.h"

#include <limits>

namespace velkin {
namespace {

struct WidthRow {
  AppearanceWidth width;
  double points;
  std::string_view label;
};

constexpr WidthRow widthRows[] = {{AppearanceWidth::slim, 340, "Slim"},
                                  {AppearanceWidth::medium, 600, "Medium"},
                                  {AppearanceWidth::wide, 980, "Wide"},
                                  {AppearanceWidth::broad, 1420, "Broad"},
                                  {AppearanceWidth::full, 3840, "Full"}};

TEST(AppearanceWidthTest, everyStepHasItsNumberAndLabelInOrder) {
  ASSERT_EQ(std::size(widthRows), allAppearanceWidths.size());
  for (std::size_t i = 0; i < std::size(widthRows); ++i) {
    EXPECT_EQ(allAppearanceWidths[i], widthRows[i].width);
    EXPECT_EQ(rawValue(widthRows[i].width), widthRows[i].points);
    EXPECT_EQ(stringValue(widthRows[i].width), widthRows[i].label);
    EXPECT_EQ(fromRawValue<AppearanceWidth>(widthRows[i].points), widthRows[i].width);
  }
}

TEST(AppearanceWidthTest, earlierStepsMapToACase) {
  EXPECT_EQ(fromRawValue<AppearanceWidth>(460.0), AppearanceWidth::slim);
  EXPECT_EQ(fromRawValue<AppearanceWidth>(1600.0), AppearanceWidth::broad);
  EXPECT_EQ(fromRawValue<AppearanceWidth>(1860.0), AppearanceWidth::broad);
  EXPECT_EQ(fromRawValue<AppearanceWidth>(2200.0), AppearanceWidth::broad);
}

TEST(AppearanceWidthTest, everyOtherNumberIsMedium) {
  for (const double points : {123.0, 0.0, -340.0, 340.5, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(fromRawValue<AppearanceWidth>(points), AppearanceWidth::medium) << points;
  }
}

TEST(AppearanceWidthTest, sizesFollowFromTheNumber) {
  for (const auto& row : widthRows) {
    EXPECT_EQ(windowSize(row.width), row.points);
    EXPECT_DOUBLE_EQ(previewSize(row.width), row.points / 10);
    EXPECT_EQ(searchBarSize(row.width), 720) << "one width for all";
  }
}

}  // namespace
}  // namespace velkin
