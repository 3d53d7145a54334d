#include "Platform/UnusedFileName.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

namespace platform {
namespace {

class UnusedFileNameTest : public testing::Test {
 protected:
  UnusedFileNameTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velkin-unused-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~UnusedFileNameTest() override { std::filesystem::remove_all(folder); }

  std::string reserved(std::string_view name) const {
    const auto file = reserveUnusedFile(folder, name);
    return file ? std::filesystem::relative(*file, folder).string() : "nothing";
  }

  std::filesystem::path folder;
};

TEST_F(UnusedFileNameTest, TakesTheSuggestedNameWhileItIsFree) {
  EXPECT_EQ(reserved("notes.txt"), "notes.txt");
}

TEST_F(UnusedFileNameTest, NumbersTheNameWhileItIsTakenAndLeavesTheOldFileAlone) {
  std::ofstream(folder / "notes.txt") << "old";
  EXPECT_EQ(reserved("notes.txt"), "notes (2).txt");
  EXPECT_EQ(reserved("notes.txt"), "notes (3).txt");
  std::ifstream old(folder / "notes.txt");
  std::string text;
  old >> text;
  EXPECT_EQ(text, "old");
}

TEST_F(UnusedFileNameTest, LeavesTheFolderForNoName) {
  EXPECT_EQ(reserved("../../etc/passwd"), "passwd");
  EXPECT_EQ(reserved("..\\evil.exe"), "evil.exe");
  EXPECT_EQ(reserved(".."), "download");
  EXPECT_EQ(reserved(".bashrc"), "bashrc");
}

TEST_F(UnusedFileNameTest, HasANameForNoName) {
  EXPECT_EQ(reserved(""), "download");
  EXPECT_EQ(reserved("a\nb"), "a_b");
}

TEST_F(UnusedFileNameTest, CutsLongNamesBetweenCharactersAndKeepsTheExtension) {
  std::string longName;
  for (int i = 0; i < 200; ++i) longName += "ü";
  const auto name = reserved(longName + ".pdf");
  EXPECT_LE(name.size(), 200U);
  EXPECT_TRUE(name.ends_with("ü.pdf")) << name;
}

TEST_F(UnusedFileNameTest, MakesTheFolder) {
  EXPECT_TRUE(reserveUnusedFile(folder / "new" / "deeper", "a").has_value());
}

TEST_F(UnusedFileNameTest, GivesNothingWhereNothingCanBeWritten) {
  std::ofstream(folder / "file") << "x";
  EXPECT_FALSE(reserveUnusedFile(folder / "file", "a").has_value());
}

}  // namespace
}  // namespace platform
