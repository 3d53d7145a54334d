#include "MarkdownEngine/GraphemeClusters.h"
#include "MarkdownEngine/TextStops.h"
#include "unit/MarkdownEngine/Utf8.h"

#include <string>

#include <gtest/gtest.h>

namespace markdown {
namespace {

/// Long enough that the place is looked at together with others, and that it is looked at alone.
const std::string paddings[] = {std::string(40, 'x'), ""};

TEST(TextStops, plainTextHasNone) {
  for (const std::string& padding : paddings) {
    const std::string text =
        "just words, (numbers) 123 and \u00fcber \u4e00 \u0430 \"quotes\"; #+-.:=?@{}^$%'/" + padding;
    EXPECT_EQ(findTextStop(text, 0), text.size());
  }
}

TEST(TextStops, everyCharacterThatMayBeMarkupIsOne) {
  for (const std::string& padding : paddings) {
    for (const char byte : std::string("\t\n\v\f\r*_~<>&`[]!|\\")) {
      std::string text = "abcde";
      text[3] = byte;
      EXPECT_EQ(findTextStop(text.append(padding), 0), 3U) << byte;
    }
  }
}

TEST(TextStops, aBlankIsOneUnlessALetterFollows) {
  for (const std::string& padding : paddings) {
    for (const std::string following : {" ", "\t", "\n", "\u00a0", "\u3000", "\u0301", "\u200d"}) {
      EXPECT_EQ(findTextStop("ab " + following + "c" + padding, 0), 2U) << testing::PrintToString(following);
    }
  }
  EXPECT_EQ(findTextStop("ab ", 0), 2U);
}

TEST(TextStops, everyScalarBeyondAsciiIsOneOrLeavesTheBlankBeforeItAsTheUnicodeTablesSay) {
  for (const std::string& padding : paddings) {
    for (char32_t scalar = 0x80; scalar <= 0x10FFFF; ++scalar) {
      if (tests::isSurrogate(scalar)) continue;
      const std::string bytes = tests::utf8(scalar);
      std::string text = "ab ";
      text.append(bytes).append("c").append(padding);
      const bool isSpace = isWhitespace(scalar);
      const bool makesBlankAStop = isSpace || graphemes::extendsPrevious(bytes, 0);
      ASSERT_EQ(findTextStop(text, 0), makesBlankAStop ? 2 : text.size())
          << static_cast<std::uint32_t>(scalar);
      ASSERT_EQ(findTextStop(text, 3), isSpace ? 3 : text.size()) << static_cast<std::uint32_t>(scalar);
    }
  }
}

TEST(TextStops, theFirstOfSeveralIsFoundWhereverItStands) {
  for (std::size_t first = 0; first < 70; ++first) {
    std::string text(80, 'x');
    text[first] = '*';
    text[79] = '_';
    EXPECT_EQ(findTextStop(text, 0), first);
    EXPECT_EQ(findTextStop(text, first + 1), 79U);
  }
}

}  // namespace
}  // namespace markdown
