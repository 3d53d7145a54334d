#include "Keyboard/HotkeySolution.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::HotKeyCombination;
using platform::NSEvent;

constexpr auto cmdShift = platform::carbon::cmdKey | platform::carbon::shiftKey;

class Counter : public HotkeySolutionDelegate {
 public:
  void didUseGlobalHotKeys() override { ++popovers; }
  void handleSearchBarDelegate() override { ++searches; }
  int popovers = 0;
  int searches = 0;
};

class HotkeySolutionTest : public testing::Test {
 protected:
  ~HotkeySolutionTest() override { HotkeySolution::delegate = nullptr; }
  platform::HeadlessPlatform desktop;
  Counter counter;
};

TEST_F(HotkeySolutionTest, MapsTheModifiersCapsLockIncluded) {
  const auto map = &HotkeySolution::getCarbonFlagsFromCocoaFlags;
  EXPECT_EQ(map(NSEvent::controlFlag), 0x1000U);
  EXPECT_EQ(map(NSEvent::commandFlag), 0x100U);
  EXPECT_EQ(map(NSEvent::shiftFlag), 0x200U);
  EXPECT_EQ(map(NSEvent::optionFlag), 0x800U);
  EXPECT_EQ(map(NSEvent::capsLockFlag), 0x400U);
  EXPECT_EQ(map(NSEvent::numericPadFlag | NSEvent::functionFlag), 0U);
}

TEST_F(HotkeySolutionTest, EachKeyTellsTheDelegate) {
  HotkeySolution::registerHotKey();
  EXPECT_EQ(desktop.keyboard.press({0x05, cmdShift}), 1);
  EXPECT_EQ(counter.popovers, 0) << "nobody is told where there is no delegate";
  HotkeySolution::delegate = &counter;
  desktop.keyboard.press({0x05, cmdShift});
  EXPECT_EQ(counter.popovers, 1);
  HotkeySolution::registerSearchBarHotKey();
  desktop.keyboard.press({0x23, cmdShift});
  EXPECT_EQ(counter.searches, 1);
}

TEST_F(HotkeySolutionTest, ARefusedKeyIsNotedAndNothingElse) {
  desktop.keyboard.heldByOthers.insert(HotKeyCombination{0x05, cmdShift});
  HotkeySolution::registerHotKey();
  EXPECT_FALSE(desktop.keyboard.isRegistered({0x05, cmdShift}));
}

}  // namespace
}  // namespace velkin
