#include "Components/IconSize.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

TEST(IconSizeTest, everySizeHasItsEdgeAndCorner) {
  EXPECT_EQ(rawValue(IconSize::small), 32);
  EXPECT_EQ(rawValue(IconSize::medium), 64);
  EXPECT_EQ(rawValue(IconSize::large), 128);
  EXPECT_EQ(cornerRadius(IconSize::small), 6);
  EXPECT_EQ(cornerRadius(IconSize::medium), 12);
  EXPECT_EQ(cornerRadius(IconSize::large), 24);
}

}  // namespace
}  // namespace velkin
