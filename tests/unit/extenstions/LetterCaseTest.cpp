#include "extenstions/LetterCase.h"

#include <gtest/gtest.h>

namespace velkin {
namespace {

TEST(LetterCase, asciiLettersChangeAndNothingElseOfIt) {
  std::string all;
  std::string upper;
  std::string lower;
  for (int c = 0; c < 0x80; ++c) {
    all += static_cast<char>(c);
    upper += static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  }
  EXPECT_EQ(uppercased(all), upper);
  EXPECT_EQ(lowercased(all), lower);
  // The same by the way for other texts.
  EXPECT_EQ(uppercased(all + "é"), upper + "É");
  EXPECT_EQ(lowercased(all + "É"), lower + "é");
}

TEST(LetterCase, otherScriptsHaveTheFullMappings) {
  EXPECT_EQ(uppercased("straße, ŉ, ω"), "STRASSE, ʼN, Ω");
  EXPECT_EQ(lowercased("ÖL, Й, İ, ΟΔΟΣ"), "öl, й, i̇, οδος");
  EXPECT_EQ(uppercased(""), "");
  EXPECT_EQ(lowercased(""), "");
}

}  // namespace
}  // namespace velkin
