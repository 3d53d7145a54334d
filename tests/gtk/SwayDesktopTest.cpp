#include "Platform/DebugLog.h"
#include "Platform/Gtk/SwayDesktop.h"
#include "Platform/Gtk/SwayRequest.h"
#include "gtk/FakeSway.h"
#include "gtk/GtkFixture.h"

#include <unistd.h>

namespace platform {
namespace {

using Type = SwayMessage::Type;

const std::string outputs =
    R"([{"name":"A","active":true,"focused":true,"rect":{"x":0,"y":0,"width":1280,"height":900}}])";
const std::string workspaces =
    R"([{"output":"A","visible":true,"rect":{"x":0,"y":30,"width":1280,"height":870}}])";
const std::string done = R"([{"success":true},{"success":true}])";
const std::string noSuchWindow = R"([{"success":false,"error":"No matching node."}])";

/// With the popover's window at its right edge, below the pointer.
std::string tree() {
  return R"({"nodes":[],"floating_nodes":[{"name":"Velkin","pid":)" + std::to_string(getpid()) +
         R"(,"rect":{"x":680,"y":0,"width":600,"height":600}}]})";
}

class SwayDesktopTest : public GtkFixture {
 protected:
  SwayDesktopTest() {
    setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~SwayDesktopTest() override { setDebugLogSink({}); }

  /// As sway answers; a command gets `outcome`.
  std::string answerTo(const SwayMessage& message) const {
    switch (message.type) {
      case Type::getOutputs:
        return frameOf({message.type, outputs});
      case Type::getWorkspaces:
        return frameOf({message.type, workspaces});
      case Type::getTree:
        return frameOf({message.type, tree()});
      default:
        return frameOf({message.type, outcome});
    }
  }

  WindowSystem::Placing placing(std::optional<PixelPoint> clickToldAs = {}) {
    return {[this]() -> std::optional<PixelPoint> {
              ++asked;
              return wanted;
            },
            clickToldAs, [this] { isOver = true; }, [this] { ++timesMissing; }};
  }

  std::string outcome = done;
  std::optional<PixelPoint> wanted = PixelPoint{680, 30};
  int asked = 0;
  bool isOver = false;
  int timesMissing = 0;
  std::vector<std::string> log;
};

TEST_F(SwayDesktopTest, TellsOfTheLayoutAndPutsAWindowWhereItIsWanted) {
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  EXPECT_FALSE(desktop.layout());
  desktop.place("[id=7]", "Velkin", placing());
  EXPECT_EQ(asked, 0) << "nobody is waited for";
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(sway.commands(),
            (std::vector<std::string>{"[id=7] border none, move absolute position 680 px 30 px"}));
  ASSERT_TRUE(desktop.layout());
  EXPECT_EQ(desktop.layout()->monitors, (std::vector{PixelRect{0, 0, 1280, 900}}));
  EXPECT_TRUE(log.empty());
}

TEST_F(SwayDesktopTest, AWindowThatIsYetToComeOntoTheScreenIsWaitedFor) {
  outcome = noSuchWindow;
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return sway.commands().size() == 3; }));
  EXPECT_FALSE(isOver);
  outcome = done;
  wanted = PixelPoint{100, 30};
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(sway.commands().back(), "[id=7] border none, move absolute position 100 px 30 px");
}

TEST_F(SwayDesktopTest, AWindowThatSwayNeverShowsIsMissing) {
  outcome = noSuchWindow;
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  for (const auto& click : {std::optional<PixelPoint>(), std::optional(PixelPoint{11, 15})}) {
    timesMissing = 0;
    isOver = false;
    desktop.place("[id=7]", "Velkin", placing(click));
    ASSERT_TRUE(wait([&] { return isOver; }));
    EXPECT_EQ(timesMissing, 1);
  }
  EXPECT_TRUE(log.empty()) << "sway has answered";
}

TEST_F(SwayDesktopTest, AWindowThatIsClosedBeforeItComesUpIsNotMissing) {
  outcome = noSuchWindow;
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return sway.commands().size() == 3; }));
  wanted.reset();
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(timesMissing, 0);
}

TEST_F(SwayDesktopTest, AWindowThatWantsNoPlaceAnyMoreIsLeftAlone) {
  wanted.reset();
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_TRUE(sway.commands().empty());
}

TEST_F(SwayDesktopTest, AClickThatWasToldFromTheIconsCornerIsWhereThePointerIs) {
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing(PixelPoint{11, 15}));
  ASSERT_TRUE(wait([&] { return isOver; }));
  ASSERT_EQ(sway.commands().size(), 2U);
  EXPECT_EQ(sway.commands().front(), "[id=7] border none, move position pointer");
  EXPECT_EQ(desktop.icon(PixelPoint{11, 15}), (PixelPoint{1279, 0}));
  EXPECT_EQ(desktop.icon(std::nullopt), (PixelPoint{1279, 0}));
  EXPECT_EQ(desktop.icon(PixelPoint{640, 15}), (PixelPoint{640, 15})) << "a place on the bar is the icon's";
}

TEST_F(SwayDesktopTest, AClickThatWasToldOnTheBarNeedsNoPointer) {
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing(PixelPoint{640, 15}));
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(sway.commands().size(), 1U);
  EXPECT_FALSE(desktop.icon(std::nullopt));
}

TEST_F(SwayDesktopTest, ARefusedCommandIsNotRepeated) {
  outcome = R"([{"success":false,"error":"Only floating containers can be moved to an absolute position"}])";
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(sway.commands().size(), 1U);
}

TEST_F(SwayDesktopTest, WhatIsNoAnswerIsGivenUpOnWithOneLine) {
  const std::vector<FakeSway::Answer> bad = {
      [](const SwayMessage&) { return std::string("HTTP/1.1 400 Bad Request\r\n\r\n"); },
      [](const SwayMessage& message) {
        return frameOf({message.type, "no JSON"});
      },
      [](const SwayMessage&) {
        return frameOf({Type::getTree, "{}"});
      },
      [](const SwayMessage& message) {
        return frameOf({message.type, std::string(2U << 20U, '[')});
      },
      [](const SwayMessage& message) {
        return frameOf({message.type, std::string(100000, '[')});
      },
      [](const SwayMessage&) { return std::string("i3-ipc\x01"); }};
  for (std::size_t i = 0; i < bad.size(); ++i) {
    FakeSway sway(bad[i]);
    SwayDesktop desktop(sway.path());
    log.clear();
    for (int repeat = 0; repeat < 2; ++repeat) {
      isOver = false;
      desktop.place("[id=7]", "Velkin", placing());
      EXPECT_TRUE(wait([&] { return isOver; })) << i;
    }
    EXPECT_FALSE(desktop.layout()) << i;
    EXPECT_EQ(log.size(), 1U) << i;
    EXPECT_TRUE(sway.commands().empty()) << i;
  }
  EXPECT_EQ(asked, 0);
}

TEST_F(SwayDesktopTest, ASwayThatHangsIsForgotten) {
  bool hangs = false;
  FakeSway sway([&](const SwayMessage& message) { return hangs ? std::string() : answerTo(message); });
  SwayDesktop desktop(sway.path());
  desktop.refresh();
  ASSERT_TRUE(wait([&] { return desktop.layout().has_value(); }));
  hangs = true;
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_FALSE(desktop.layout());
  hangs = false;
  isOver = false;
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_TRUE(desktop.layout()) << "it answers again";
  EXPECT_EQ(log.size(), 1U);
}

TEST_F(SwayDesktopTest, ASocketThatNobodyListensOnIsGivenUpOn) {
  SwayDesktop desktop("/nonexistent/sway");
  desktop.place("[id=7]", "Velkin", placing());
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(log.size(), 1U);
}

TEST_F(SwayDesktopTest, OneThatGoesWhileItIsAskedIsNotCalledBack) {
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  {
    SwayDesktop desktop(sway.path());
    desktop.place("[id=7]", "Velkin", placing());
  }
  ASSERT_TRUE(wait([&] { return isOver; }));
  EXPECT_EQ(asked, 0);
}

TEST_F(SwayDesktopTest, OnlyTheCompositorOfTheSessionIsAsked) {
  FakeSway sway([this](const SwayMessage& message) { return answerTo(message); });
  FakeSway display([](const SwayMessage&) { return std::string(); });
  EXPECT_TRUE(isCompositorsOwn(sway.path(), display.path()));
  EXPECT_FALSE(isCompositorsOwn(sway.path(), "/nonexistent/wayland"));
  EXPECT_FALSE(isCompositorsOwn("/nonexistent/sway", display.path()));
  // The session's bus is another process.
  const std::string bus = std::string(g_get_user_runtime_dir()) + "/bus";
  EXPECT_FALSE(isCompositorsOwn(bus, display.path()));
  EXPECT_TRUE(isCompositorsOwn(bus, bus));
}

}  // namespace
}  // namespace platform
