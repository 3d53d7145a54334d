#include "Platform/SwayFrames.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using MessageType = SwayMessage::Type;

TEST(SwayFramesTest, AMessageIsItsKindItsLengthAndItsText) {
  const auto bytes = frameOf({MessageType::getOutputs, "abc"});
  const std::uint32_t length = 3;
  const auto type = static_cast<std::uint32_t>(MessageType::getOutputs);
  ASSERT_EQ(bytes.size(), 6U + 4U + 4U + 3U);
  EXPECT_EQ(bytes.substr(0, 6), "i3-ipc");
  EXPECT_EQ(bytes.substr(6, 4), std::string(reinterpret_cast<const char*>(&length), 4));
  EXPECT_EQ(bytes.substr(10, 4), std::string(reinterpret_cast<const char*>(&type), 4));
  EXPECT_EQ(bytes.substr(14), "abc");
}

TEST(SwayFramesTest, MessagesComeOutHoweverTheirBytesAreCut) {
  const SwayMessage first{MessageType::getWorkspaces, "[]"};
  const SwayMessage second{MessageType::runCommand, ""};
  const SwayMessage third{MessageType::getTree, std::string(5000, 'x')};
  const auto bytes = frameOf(first) + frameOf(second) + frameOf(third);
  for (const std::size_t piece : {1U, 3U, 13U, 14U, 17U, 100000U}) {
    SwayFrames frames;
    std::vector<SwayMessage> found;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
      frames.add(bytes.substr(at, piece));
      while (auto message = frames.next()) found.push_back(*message);
    }
    EXPECT_EQ(found, (std::vector{first, second, third})) << "in pieces of " << piece;
    EXPECT_FALSE(frames.isBroken());
  }
}

TEST(SwayFramesTest, WhatIsNoMessageBreaksThemAtItsFirstByte) {
  SwayFrames frames;
  frames.add("i3-");
  EXPECT_FALSE(frames.isBroken());
  frames.add("H");
  EXPECT_TRUE(frames.isBroken());
  frames.add(frameOf({MessageType::getTree, "{}"}));
  EXPECT_FALSE(frames.next());
}

TEST(SwayFramesTest, WhatFollowsAMessageIsLookedAtToo) {
  SwayFrames frames;
  frames.add(frameOf({MessageType::getTree, "{}"}) + "HTTP/1.1");
  EXPECT_EQ(frames.next()->text, "{}");
  EXPECT_TRUE(frames.isBroken());
  EXPECT_FALSE(frames.next());
}

TEST(SwayFramesTest, ALengthBeyondTheMostIsNotWaitedFor) {
  auto bytes = frameOf({MessageType::getTree, ""});
  bytes.replace(6, 4, "\xff\xff\xff\x7f");
  SwayFrames frames;
  frames.add(bytes);
  EXPECT_TRUE(frames.isBroken());
  EXPECT_FALSE(frames.next());
}

}  // namespace
}  // namespace platform
