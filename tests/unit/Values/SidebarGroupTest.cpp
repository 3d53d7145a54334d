#include "Values/SidebarGroup.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

TEST(SidebarGroupTest, aGroupIsNotFullScreenAndHasNoSidebarsUnlessTold) {
  const SidebarGroup group{.mainView = WebViewSwitchType::bard};
  EXPECT_FALSE(group.isFullScreen);
  EXPECT_FALSE(group.sideBar1);
  EXPECT_FALSE(group.sideBar2);
}

TEST(SidebarGroupTest, groupsAreEqualIfEveryFieldIs) {
  const SidebarGroup group{.mainView = WebViewSwitchType::bard, .sideBar1 = WebViewSwitchType::jira};
  auto other = group;
  EXPECT_EQ(group, other);
  other.sideBar2 = WebViewSwitchType::gitlab;
  EXPECT_NE(group, other);
}

}  // namespace
}  // namespace velkin
