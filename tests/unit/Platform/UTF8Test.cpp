#include "Platform/UTF8.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UTF8Test, nulCharactersAreReplacedAndNothingElse) {
  EXPECT_EQ(withoutNulCharacters(std::string("a\0\0b\0", 5)), "a\uFFFD\uFFFDb\uFFFD");
  EXPECT_EQ(withoutNulCharacters("\x01 ä"), "\x01 ä");
  EXPECT_EQ(withoutNulCharacters(""), "");
}

TEST(UTF8Test, AWellFormedTextHasNeitherNulsNorBrokenParts) {
  EXPECT_EQ(wellFormed("aä😀"), "aä😀");
  EXPECT_EQ(wellFormed(std::string_view("a\0b", 3)), "a\uFFFDb");
  EXPECT_EQ(wellFormed("x\xC3(\xED\xA0\x80"), "x\uFFFD(\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(wellFormed(""), "");
}

}  // namespace
}  // namespace platform
