#include "Platform/UTF8.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UTF8Test, nulCharactersAreReplacedAndNothingElse) {
  EXPECT_EQ(withoutNulCharacters(std::string("a\0\0b\0", 5)), "a\uFFFD\uFFFDb\uFFFD");
  EXPECT_EQ(withoutNulCharacters("\x01 ä"), "\x01 ä");
  EXPECT_EQ(withoutNulCharacters(""), "");
}

}  // namespace
}  // namespace platform
