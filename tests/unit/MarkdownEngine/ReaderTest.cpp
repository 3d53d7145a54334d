#include "MarkdownEngine/HTML.h"
#include "MarkdownEngine/InlineCode.h"
#include "MarkdownEngine/Readable.h"
#include "MarkdownEngine/Reader.h"

#include <gtest/gtest.h>

namespace markdown {
namespace {

/// A reader with the text that it borrows.
struct Reading {
  explicit Reading(std::string_view text) : source(text), content(text), reader(source) {}
  Source source;
  Content content;
  Reader reader;
};

TEST(Reader, anEmptyInputIsAtItsEndAtOnce) {
  Reading reading("");
  EXPECT_TRUE(reading.reader.didReachEnd());
  EXPECT_FALSE(reading.reader.previousCharacter());
  EXPECT_FALSE(reading.reader.nextCharacter());
  EXPECT_EQ(reading.reader.readUntilEndOfLine(), "");
}

TEST(Reader, readConsumesTheCharacterOrFails) {
  Reading reading("ab");
  EXPECT_FALSE(reading.reader.read('b'));
  EXPECT_TRUE(reading.reader.read('a'));
  EXPECT_TRUE(reading.reader.read('b'));
  EXPECT_FALSE(reading.reader.read('b'));
}

TEST(Reader, aCharacterWithACombiningMarkIsAnotherCharacter) {
  Reading reading("*\u0301");
  EXPECT_FALSE(reading.reader.read('*'));
  EXPECT_EQ(reading.reader.currentCharacter(), "*\u0301");
}

TEST(Reader, readCountReturnsTheLengthOfTheRun) {
  Reading reading("## a");
  EXPECT_EQ(reading.reader.readCount('#'), 2U);
  EXPECT_EQ(reading.reader.currentCharacter(), " ");
  EXPECT_EQ(reading.reader.readCount('#'), 0U);
}

TEST(Reader, aBalancedOpenerHidesATerminator) {
  Reading reading("a(b)c) d");
  EXPECT_EQ(reading.reader.readUntil(')', {.balanceAgainst = '('}), "a(b)c");
  EXPECT_EQ(reading.reader.currentCharacter(), " ");
}

TEST(Reader, aTerminatorThatIsntRequiredMayBeMissing) {
  Reading reading("abc\nd");
  EXPECT_EQ(reading.reader.readUntil(':', {.required = false}), "abc");
  EXPECT_EQ(reading.reader.currentCharacter(), "\n");
}

TEST(Reader, whiteSpaceEndsASearchThatDoesntAllowIt) {
  Reading reading("amp x;");
  EXPECT_FALSE(reading.reader.readUntil(';', {.allowWhitespace = false}));
  EXPECT_EQ(reading.reader.currentCharacter(), " ");
}

TEST(Reader, aNewlineEndsASearchThatDoesntAllowIt) {
  Reading reading("ab\ncd");
  EXPECT_FALSE(reading.reader.readUntil('d'));
  EXPECT_EQ(reading.reader.currentCharacter(), "\n");
  EXPECT_EQ(reading.reader.readUntil('d', {.allowLineBreaks = true}), "\nc");
}

TEST(Reader, readWhitespacesRequiresABlankOnTheLine) {
  Reading reading(" \t\u00a0a\n");
  const auto blanks = reading.reader.readWhitespaces();
  ASSERT_TRUE(blanks);
  EXPECT_EQ(blanks->count, 3U);
  EXPECT_FALSE(reading.reader.readWhitespaces());
  reading.reader.advanceIndex();
  EXPECT_FALSE(reading.reader.readWhitespaces());
}

TEST(Reader, readNumbersTakesEveryCharacterWithANumericValue) {
  Reading reading("1\u0662\u00bd\u4e00a");
  const auto numbers = reading.reader.readNumbers();
  ASSERT_TRUE(numbers);
  EXPECT_EQ(numbers->count, 4U);
  EXPECT_FALSE(reading.reader.readNumbers());
}

TEST(Reader, readNumbersTakesNoMoreThanAsked) {
  Reading reading("12345");
  EXPECT_EQ(reading.reader.readNumbers(3)->text, "123");
}

TEST(Reader, readUntilEndOfLineStopsAtEveryKindOfNewlineAndConsumesIt) {
  for (const std::string newline : {"\n", "\v", "\f", "\r", "\r\n", "\u0085", "\u2028", "\u2029"}) {
    const std::string text = "a " + newline + "b";
    Reading reading(text);
    EXPECT_EQ(reading.reader.readUntilEndOfLine(), "a ");
    EXPECT_EQ(reading.reader.currentCharacter(), "b");
  }
}

TEST(Reader, crLfIsOneCharacter) {
  Reading reading("a\r\nb");
  EXPECT_EQ(reading.reader.nextCharacter(), "\r\n");
  reading.reader.advanceIndex();
  EXPECT_TRUE(reading.reader.isAtNewline());
  reading.reader.advanceIndex();
  EXPECT_EQ(reading.reader.currentCharacter(), "b");
  EXPECT_EQ(reading.reader.previousCharacter(), "\r\n");
  EXPECT_FALSE(reading.reader.nextCharacter());
}

TEST(Reader, discardingBlanksStopsAtANewline) {
  Reading reading(" \t\n b");
  reading.reader.discardWhitespaces();
  EXPECT_TRUE(reading.reader.isAtNewline());
  reading.reader.discardWhitespacesAndNewlines();
  EXPECT_EQ(reading.reader.currentCharacter(), "b");
}

TEST(Reader, theIndexMovesByCharacters) {
  Reading reading("e\u0301\U0001F1E6\U0001F1E8x");
  reading.reader.advanceIndex(2);
  EXPECT_EQ(reading.reader.currentCharacter(), "x");
  reading.reader.rewindIndex();
  EXPECT_EQ(reading.reader.currentCharacter(), "\U0001F1E6\U0001F1E8");
  reading.reader.moveToIndex(0);
  EXPECT_EQ(reading.reader.currentCharacter(), "e\u0301");
}

TEST(Readable, nothingIsReadRightBehindABackslash) {
  Reading reading("\\`a`");
  reading.reader.advanceIndex();
  EXPECT_FALSE(readOrRewind<InlineCode>(reading.reader, reading.content));
  EXPECT_EQ(reading.reader.currentIndex(), 1U);
}

TEST(Readable, aFailedReadLeavesThePositionWhereItWas) {
  Reading reading("x<a b");
  reading.reader.advanceIndex();
  EXPECT_FALSE(readOrRewind<HTML>(reading.reader, reading.content));
  EXPECT_EQ(reading.reader.currentIndex(), 1U);
}

TEST(Readable, aReadElementIsConsumed) {
  Reading reading("`a`b");
  const auto code = readOrRewind<InlineCode>(reading.reader, reading.content);
  ASSERT_TRUE(code);
  EXPECT_EQ(code->code, "a");
  EXPECT_EQ(reading.reader.currentCharacter(), "b");
}

TEST(Trimming, dropsWhiteSpaceOfEveryKind) {
  EXPECT_EQ(trimmingLeadingWhitespaces(" \n\u00a0a b "), "a b ");
  EXPECT_EQ(trimmingTrailingWhitespaces(" a b\u2003\r\n "), " a b");
  EXPECT_EQ(trimmingTrailingWhitespaces("a \u0301"), "a");
  EXPECT_EQ(trimmingTrailingWhitespaces("e\u0301"), "e\u0301");
  EXPECT_EQ(trimmingWhitespaces(" \t\n"), "");
}

}  // namespace
}  // namespace markdown
