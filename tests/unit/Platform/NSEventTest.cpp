#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSEvent.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Passed = std::optional<NSEvent>;
using Type = NSEvent::EventType;

class NSEventTest : public testing::Test {
 protected:
  Connection watch(std::string name, Type type = Type::keyDown, bool keeps = false) {
    return NSEvent::addLocalMonitorForEvents(NSEvent::mask(type),
                                             [this, name, keeps](const NSEvent& event) -> Passed {
                                               told.push_back(name);
                                               return keeps ? Passed() : Passed(event);
                                             });
  }
  Passed send(Type type) { return desktop.app.filterByMonitors({.type = type}); }

  HeadlessPlatform desktop;
  std::vector<std::string> told;
};

using Names = std::vector<std::string>;

TEST_F(NSEventTest, TheNewestMonitorSeesAnEventFirst) {
  const auto first = watch("first");
  const auto second = watch("second");
  EXPECT_TRUE(send(Type::keyDown).has_value());
  EXPECT_EQ(told, (Names{"second", "first"}));
}

TEST_F(NSEventTest, WhatAMonitorKeepsReachesNoOlderOne) {
  const auto first = watch("first");
  const auto second = watch("second", Type::keyDown, true);
  EXPECT_FALSE(send(Type::keyDown).has_value());
  EXPECT_EQ(told, Names{"second"});
}

TEST_F(NSEventTest, AMonitorHearsOnlyOfItsKinds) {
  const auto keys = watch("keys");
  const auto buttons = watch("buttons", Type::leftMouseUp);
  send(Type::leftMouseUp);
  send(Type::keyUp);
  EXPECT_EQ(told, Names{"buttons"});
}

TEST_F(NSEventTest, AMonitorEndsWithItsToken) {
  {
    const auto token = watch("gone");
    EXPECT_TRUE(static_cast<bool>(token));
  }
  auto token = watch("replaced");
  token = {};
  EXPECT_FALSE(static_cast<bool>(token));
  send(Type::keyDown);
  EXPECT_TRUE(told.empty());
}

TEST_F(NSEventTest, AMovedTokenKeepsItsMonitor) {
  auto token = watch("monitor");
  const auto moved = std::move(token);
  send(Type::keyDown);
  EXPECT_EQ(told, Names{"monitor"});
}

TEST_F(NSEventTest, AMonitorThatAnotherEndsDuringAnEventHearsNoMoreOfIt) {
  auto older = watch("older");
  const auto newer =
      NSEvent::addLocalMonitorForEvents(NSEvent::mask(Type::keyDown), [&](const NSEvent& e) -> Passed {
        older = {};
        return e;
      });
  EXPECT_TRUE(send(Type::keyDown).has_value());
  EXPECT_TRUE(told.empty());
}

TEST_F(NSEventTest, AMonitorMayEndItselfAndAddAnother) {
  Connection added;
  Connection self;
  self = NSEvent::addLocalMonitorForEvents(NSEvent::mask(Type::keyDown), [&](const NSEvent& e) -> Passed {
    self = {};
    added = watch("added");
    return e;
  });
  EXPECT_TRUE(send(Type::keyDown).has_value());
  EXPECT_TRUE(told.empty()) << "a new monitor hears of the next event";
  send(Type::keyDown);
  EXPECT_EQ(told, Names{"added"});
}

TEST_F(NSEventTest, AMonitorMayHandOnAnotherEvent) {
  Type seen = Type::keyDown;
  const auto older =
      NSEvent::addLocalMonitorForEvents(NSEvent::mask(Type::keyUp), [&](const NSEvent& e) -> Passed {
        seen = e.type;
        return e;
      });
  const auto newer = NSEvent::addLocalMonitorForEvents(
      NSEvent::mask(Type::keyDown), [](const NSEvent&) -> Passed { return NSEvent{.type = Type::keyUp}; });
  EXPECT_EQ(send(Type::keyDown)->type, Type::keyUp);
  EXPECT_EQ(seen, Type::keyUp);
}

}  // namespace
}  // namespace platform
