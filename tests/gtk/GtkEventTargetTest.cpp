#include "Platform/Gtk/GtkEventTarget.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr HotKeyCombination t{0x11, carbon::cmdKey};
constexpr HotKeyCombination r{0x0F, carbon::cmdKey};

class RecordedGrabs : public HotKeyGrabs {
 public:
  explicit RecordedGrabs(OnKey key) : onKey(std::move(key)) {}
  OSStatus grab(HotKeyCombination combination) override {
    if (refuses) return eventHotKeyExistsErr;
    EXPECT_TRUE(held.insert(combination).second) << "grabbed twice";
    return noErr;
  }
  void ungrab(HotKeyCombination combination) override { EXPECT_EQ(held.erase(combination), 1U); }
  bool isHeldByAnother(HotKeyCombination) override { return refuses; }

  OnKey onKey;
  std::set<HotKeyCombination> held;
  bool refuses = false;
};

class GtkEventTargetTest : public testing::Test {
 protected:
  GtkEventTargetTest() {
    const std::array types = {EventTypeSpec{kEventClassKeyboard, kEventHotKeyPressed},
                              EventTypeSpec{kEventClassKeyboard, kEventHotKeyReleased}};
    static_cast<void>(target.InstallEventHandler(
        [this](const CarbonEvent* event) {
          told.push_back((event->kind == kEventHotKeyPressed ? "down " : "up ") +
                         std::to_string(event->hotKeyID->id));
          if (onEvent) onEvent();
          return noErr;
        },
        types));
  }

  RecordedGrabs* grabs = nullptr;
  std::vector<std::string> told;
  std::function<void()> onEvent;
  GtkEventTarget target{[this](HotKeyGrabs::OnKey onKey) -> std::unique_ptr<HotKeyGrabs> {
    auto made = std::make_unique<RecordedGrabs>(std::move(onKey));
    grabs = made.get();
    return made;
  }};
};

TEST_F(GtkEventTargetTest, NothingIsAskedOfTheDesktopBeforeTheFirstNeed) { EXPECT_EQ(grabs, nullptr); }

TEST_F(GtkEventTargetTest, ACombinationIsHeldUntilItsLastRegistrationGoes) {
  const auto first = target.RegisterEventHotKey(t, {1, 1});
  const auto second = target.RegisterEventHotKey(t, {1, 2});
  ASSERT_TRUE(first && second);
  EXPECT_EQ(target.UnregisterEventHotKey(*first), noErr);
  EXPECT_EQ(grabs->held, std::set{t});
  grabs->onKey(t, true, {});
  EXPECT_EQ(told, std::vector<std::string>{"down 2"});
  EXPECT_EQ(target.UnregisterEventHotKey(*second), noErr);
  EXPECT_TRUE(grabs->held.empty());
  EXPECT_EQ(target.UnregisterEventHotKey(*second), eventHotKeyInvalidErr);
}

TEST_F(GtkEventTargetTest, ARefusedOneLeavesNothingBehind) {
  ASSERT_TRUE(target.RegisterEventHotKey(r, {1, 1}));
  grabs->refuses = true;
  const auto refused = target.RegisterEventHotKey(t, {1, 2});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error(), eventHotKeyExistsErr);
  EXPECT_TRUE(target.isHeldByAnother(t));
  EXPECT_FALSE(target.isHeldByAnother(r)) << "one's own isn't another's";
  grabs->onKey(t, true, {});
  EXPECT_TRUE(told.empty());
}

TEST_F(GtkEventTargetTest, TheActivationIsThereWhileTheActionsRunAndNoLonger) {
  ASSERT_TRUE(target.RegisterEventHotKey(t, {1, 1}));
  std::uint32_t seen = 0;
  onEvent = [&] { seen = presentActivation() == nullptr ? 0 : presentActivation()->time; };
  grabs->onKey(t, true, {4711, {}});
  EXPECT_EQ(seen, 4711U);
  EXPECT_EQ(presentActivation(), nullptr);
}

TEST_F(GtkEventTargetTest, AnActionMayRegisterAndUnregister) {
  const auto first = target.RegisterEventHotKey(t, {1, 1});
  ASSERT_TRUE(first);
  onEvent = [&] {
    target.UnregisterEventHotKey(*first);
    static_cast<void>(target.RegisterEventHotKey(r, {1, 2}));
  };
  grabs->onKey(t, true, {});
  EXPECT_EQ(grabs->held, std::set{r});
}

}  // namespace
}  // namespace platform
