#include "MarkdownEngine/GraphemeClusters.h"
#include "unit/MarkdownEngine/RandomDocuments.h"
#include "unit/MarkdownEngine/Utf8.h"
#include "unit/MarkdownEngine/reference/Characters.h"

#include <string>

#include <gtest/gtest.h>
#include <unicode/uchar.h>

namespace markdown::graphemes {
namespace {

using tests::isSurrogate;
using tests::utf8;

TEST(GraphemeClusters, everyScalarJoinsItsAsciiNeighboursAsTheUnicodeTablesSay) {
  for (char32_t scalar = 0x80; scalar <= 0x10FFFF; ++scalar) {
    if (isSurrogate(scalar)) continue;
    const int value = u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK);
    const std::string text = utf8(scalar);
    const bool extends = value == U_GCB_EXTEND || value == U_GCB_ZWJ || value == U_GCB_SPACING_MARK;
    ASSERT_EQ(extendsPrevious(text, 0), extends) << std::hex << static_cast<std::uint32_t>(scalar);
    ASSERT_EQ(prependsNext(text, text.size()), value == U_GCB_PREPEND)
        << std::hex << static_cast<std::uint32_t>(scalar);
  }
}

TEST(GraphemeClusters, everyScalarHasTheWhiteSpaceOfTheUnicodeTables) {
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    const bool isSpace = u_hasBinaryProperty(static_cast<UChar32>(scalar), UCHAR_WHITE_SPACE) != 0;
    ASSERT_EQ(isWhitespace(scalar), isSpace) << std::hex << static_cast<std::uint32_t>(scalar);
    if (isSurrogate(scalar)) continue;
    const std::string text = utf8(scalar);
    const bool isStop = ByteSet(whitespaceBytes).contains(text[0]);
    ASSERT_TRUE(isStop || !isSpace) << std::hex << static_cast<std::uint32_t>(scalar);
    ASSERT_EQ(whitespaceAt(text, 0).kind != Whitespace::Kind::none, isSpace);
  }
}

TEST(GraphemeClusters, everyScalarIsANumberAsTheUnicodeTablesSay) {
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    ASSERT_EQ(isNumber(scalar), u_getNumericValue(static_cast<UChar32>(scalar)) != U_NO_NUMERIC_VALUE)
        << std::hex << static_cast<std::uint32_t>(scalar);
  }
}

TEST(GraphemeClusters, boundariesAreTheLibrarysInBothDirections) {
  tests::RandomDocuments documents(5);
  for (int i = 0; i < 3000; ++i) {
    const std::string text = documents.next(30);
    std::size_t start = 0;
    for (const auto& character : reference::charactersOf(text)) {
      const std::size_t end = start + character.bytes.size();
      ASSERT_EQ(characterEnd(text, start), end) << testing::PrintToString(text);
      ASSERT_EQ(characterStart(text, end), start) << testing::PrintToString(text);
      start = end;
    }
  }
}

TEST(GraphemeClusters, longSequencesAreOneCharacterOrPairs) {
  const std::string family = "\U0001F468\u200d\U0001F469\u200d\U0001F467";
  EXPECT_EQ(characterEnd(family + "a", 0), family.size());
  const std::string flags = "\U0001F1E6\U0001F1E8\U0001F1E6\U0001F1E8\U0001F1E6";
  EXPECT_EQ(characterEnd(flags, 0), 8U);
  EXPECT_EQ(characterStart(flags, flags.size()), 16U);
  const std::string syllable = "\u1112\u1161\u11ab";
  EXPECT_EQ(characterEnd(syllable, 0), syllable.size());
}

TEST(GraphemeClusters, aBackslashThatBelongsToAnotherCharacterEscapesNothing) {
  EXPECT_TRUE(isBehindBackslash("\\*", 1));
  EXPECT_FALSE(isBehindBackslash("\u0600\\*", 3));
  EXPECT_FALSE(isBehindBackslash("a", 0));
}

}  // namespace
}  // namespace markdown::graphemes
