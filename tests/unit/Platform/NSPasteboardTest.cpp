#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSPasteboard.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

class NSPasteboardTest : public testing::Test {
 protected:
  void read() {
    NSPasteboard::generalPasteboard().readItems(
        [this](const NSPasteboardReading& reading) { told.push_back(reading.string().value_or("nothing")); });
  }
  HeadlessPlatform desktop;
  std::vector<std::string> told;
};

using Texts = std::vector<std::string>;

TEST_F(NSPasteboardTest, AReadingIsOfTheMomentWhenItWasAskedForAndToldLater) {
  auto& board = NSPasteboard::generalPasteboard();
  board.setString("one", NSPasteboardTypeString);
  read();
  board.clearContents();
  read();
  board.setString("two", NSPasteboardTypeString);
  read();
  EXPECT_TRUE(told.empty());
  desktop.queue.drain();
  EXPECT_EQ(told, (Texts{"one", "nothing", "two"}));
}

TEST_F(NSPasteboardTest, TheStringIsTheLastItems) {
  desktop.pasteboard.otherItems = {{"first"}, {std::nullopt}};
  read();
  desktop.pasteboard.string = "last";
  read();
  desktop.queue.drain();
  EXPECT_EQ(told, (Texts{"nothing", "last"}));
}

TEST_F(NSPasteboardTest, AFailureHasNoItems) {
  desktop.pasteboard.string = "there";
  desktop.pasteboard.failure = NSPasteboardReading::Failure::noAnswer;
  std::optional<NSPasteboardReading> seen;
  NSPasteboard::generalPasteboard().readItems([&](const NSPasteboardReading& reading) { seen = reading; });
  desktop.queue.drain();
  ASSERT_TRUE(seen.has_value());
  EXPECT_TRUE(seen->items.empty());
  EXPECT_EQ(seen->failure, NSPasteboardReading::Failure::noAnswer);
}

}  // namespace
}  // namespace platform
