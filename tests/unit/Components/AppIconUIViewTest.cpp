#include "Components/AppIconUIView.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

TEST(AppIconUIViewTest, everySeventhTapFires) {
  const platform::HeadlessPlatform desktop;
  int fired = 0;
  platform::NSHostingController<AppIconUIView> host(
      AppIconUIView{.iconSize = IconSize::small, .action = [&fired] { ++fired; }});
  auto* icon = platform::headlessTree(host).control("Velkin");
  ASSERT_NE(icon, nullptr);
  EXPECT_EQ(icon->element().modifiers.frame.width, 32);
  for (int tap = 1; tap <= 21; ++tap) {
    icon->press();
    EXPECT_EQ(fired, tap / 7) << tap;
  }
}

TEST(AppIconUIViewTest, withoutAnActionTapsDoNothing) {
  const platform::HeadlessPlatform desktop;
  platform::NSHostingController<AppIconUIView> host(AppIconUIView{});
  for (int tap = 0; tap < 7; ++tap) platform::headlessTree(host).control("Velkin")->press();
  EXPECT_EQ(host.rootView.tapCounter.get(), 0);
}

}  // namespace
}  // namespace velkin
