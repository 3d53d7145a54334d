#include "Markdown/ScratchpadJournal.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "unit/Repetitions.h"
#include "unit/TemporaryFolder.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace velkin {
namespace {

using Texts = std::vector<std::string>;

class ScratchpadJournalTest : public testing::Test {
 protected:
  ScratchpadJournalTest() { desktop.dataFolder = folder.path(); }

  ScratchpadJournal journal() { return ScratchpadJournal::ofUser(); }
  ScratchpadJournalWriter writer() { return ScratchpadJournalWriter(journal()); }
  Texts texts() {
    Texts all;
    for (const auto& entry : journal().entries()) all.push_back(entry.text);
    return all;
  }
  std::vector<std::filesystem::path> files() {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "scratchpad"))
      found.push_back(entry.path());
    return found;
  }
  static mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 0777U;
  }

  TemporaryFolder folder;
  platform::HeadlessPlatform desktop;
};

TEST_F(ScratchpadJournalTest, EveryChangeIsOnDiskAtOnce) {
  auto keeper = writer();
  EXPECT_TRUE(texts().empty());
  EXPECT_TRUE(keeper.changed("", "a"));
  EXPECT_EQ(texts(), Texts{"a"});
  EXPECT_TRUE(keeper.changed("a", "aä"));
  EXPECT_TRUE(keeper.changed("aä", "xaä"));
  EXPECT_TRUE(keeper.changed("xaä", "x"));
  EXPECT_EQ(texts(), Texts{"x"});
  EXPECT_EQ(files().size(), 1U);
  EXPECT_EQ(journal().latest()->text, "x");
  EXPECT_GT(journal().latest()->time, 0);
}

TEST_F(ScratchpadJournalTest, OnlyItsOwnerReadsIt) {
  auto keeper = writer();
  keeper.changed("", "a");
  EXPECT_EQ(modeOf(folder.path() / "scratchpad"), 0700U);
  EXPECT_EQ(modeOf(files().front()), 0600U);
}

TEST_F(ScratchpadJournalTest, AChangeCostsItsOwnLengthOnDisk) {
  auto keeper = writer();
  const std::string text(100000, 'x');
  keeper.changed("", text);
  const auto before = std::filesystem::file_size(files().front());
  keeper.changed(text, text + "y");
  EXPECT_LE(std::filesystem::file_size(files().front()), before + 32);
}

TEST_F(ScratchpadJournalTest, AFileBeginsAnewBeforeItIsLongToRead) {
  auto keeper = writer();
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    const auto before = text;
    text += static_cast<char>('a' + i % 26);
    ASSERT_TRUE(keeper.changed(before, text));
  }
  EXPECT_EQ(texts(), Texts{text});
  ASSERT_EQ(files().size(), 1U);
  EXPECT_LT(std::filesystem::file_size(files().front()), 2100U * 17 + 5000);
}

TEST_F(ScratchpadJournalTest, AnyChangesLeadToTheSameText) {
  for (int round = 0; round < repetitions(100); ++round) {
    std::mt19937 random(static_cast<unsigned>(round));
    auto keeper = writer();
    std::string text;
    for (int step = 0; step < 60; ++step) {
      auto next = text;
      const auto at = random() % (next.size() + 1);
      const auto length = random() % (next.size() - at + 1) / 3;
      next.replace(at, length, std::string(random() % 5, static_cast<char>('a' + random() % 3)));
      if (next.empty()) continue;
      ASSERT_TRUE(keeper.changed(text, next));
      text = next;
    }
    ASSERT_EQ(journal().latest()->text, text) << "round " << round;
    keeper.endEntry();
    // Entries of one moment have the same time in their names and are told apart by a number.
    desktop.queue.advance(1);
  }
}

TEST_F(ScratchpadJournalTest, WhatTakesMostOfATextAwayLeavesItInTheJournal) {
  auto keeper = writer();
  const std::string longText(100, 'x');
  keeper.changed("", longText);
  desktop.queue.advance(1);
  keeper.changed(longText, "new");
  EXPECT_EQ(texts(), (Texts{"new", longText}));
  keeper.changed("new", "n");
  EXPECT_EQ(texts(), (Texts{"n", longText})) << "a short text is edited";
}

TEST_F(ScratchpadJournalTest, FiftyTextsAreKeptAndNoneIsListedTwice) {
  for (int i = 0; i < 60; ++i) {
    auto keeper = writer();
    keeper.changed("", "text " + std::to_string(i));
    desktop.queue.advance(1);
  }
  EXPECT_EQ(files().size(), ScratchpadJournal::mostTexts);
  EXPECT_EQ(texts().front(), "text 59");
  EXPECT_EQ(texts().back(), "text 10");
  auto keeper = writer();
  keeper.changed("", "text 30");
  EXPECT_EQ(texts().front(), "text 30");
  EXPECT_EQ(texts().size(), ScratchpadJournal::mostTexts - 1);
}

TEST_F(ScratchpadJournalTest, HalfAChangeIsLeftOut) {
  auto keeper = writer();
  keeper.changed("", "whole");
  keeper.changed("whole", "whole and more");
  const auto file = files().front();
  const auto bytes = contentsOf(file);
  for (std::size_t cut = 1; cut <= std::string(" and more").size() + 16; ++cut) {
    writeFile(file, std::string_view(bytes).substr(0, bytes.size() - cut));
    EXPECT_EQ(texts(), Texts{"whole"}) << cut;
  }
}

TEST_F(ScratchpadJournalTest, NoiseIsPassedOver) {
  auto keeper = writer();
  keeper.changed("", "mine");
  const auto bytes = contentsOf(files().front());
  std::mt19937 random(1);
  std::string noise(100000, '\0');
  for (auto& byte : noise) byte = static_cast<char>(random());
  const auto place = folder.path() / "scratchpad";
  writeFile(place / "9999999999999999-00.text", noise);
  writeFile(place / "9999999999999998-00.text", "");
  writeFile(place / "9999999999999997-00.text", bytes.substr(0, 20) + noise);
  std::filesystem::create_directory(place / "9999999999999996-00.text");
  mkfifo((place / "9999999999999995-00.text").c_str(), 0600);
  EXPECT_EQ(texts(), Texts{"mine"});
  EXPECT_EQ(journal().latest()->text, "mine");
  // Whatever single byte is wrong, what is read is no text that never was.
  for (std::size_t i = 20; i < bytes.size(); ++i) {
    auto damaged = bytes;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x41);
    writeFile(place / "9999999999999999-00.text", damaged);
    EXPECT_EQ(texts(), Texts{"mine"}) << i;
  }
}

TEST_F(ScratchpadJournalTest, WhereNothingCanBeWrittenItSaysSoAndGoesOn) {
  writeFile(folder.path() / "scratchpad", "a file in its place");
  auto keeper = writer();
  EXPECT_FALSE(keeper.changed("", "a"));
  EXPECT_FALSE(keeper.changed("a", "ab"));
  std::filesystem::remove(folder.path() / "scratchpad");
  EXPECT_TRUE(keeper.changed("ab", "abc"));
  EXPECT_EQ(texts(), Texts{"abc"}) << "all of it, once there is room";
}

TEST_F(ScratchpadJournalTest, AfterADiskWasFullTheWholeTextIsThere) {
  auto keeper = writer();
  std::string text = "start";
  ASSERT_TRUE(keeper.changed("", text));
  rlimit usual{};
  getrlimit(RLIMIT_FSIZE, &usual);
  const rlimit full{60, usual.rlim_max};
  setrlimit(RLIMIT_FSIZE, &full);
  const auto before = text;
  text += std::string(200, 'x');
  const bool isWritten = keeper.changed(before, text);
  setrlimit(RLIMIT_FSIZE, &usual);
  EXPECT_FALSE(isWritten);
  EXPECT_EQ(texts(), Texts{"start"});
  EXPECT_TRUE(keeper.changed(text, text + "!"));
  EXPECT_EQ(texts(), Texts{text + "!"});
}

TEST_F(ScratchpadJournalTest, WithoutAFolderNothingIsKept) {
  desktop.dataFolder.clear();
  auto keeper = writer();
  EXPECT_TRUE(keeper.changed("", "a"));
  EXPECT_TRUE(journal().entries().empty());
  EXPECT_FALSE(journal().latest().has_value());
}

}  // namespace
}  // namespace velkin
