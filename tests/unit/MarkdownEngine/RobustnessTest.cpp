#include "MarkdownEngine/MarkdownParser.h"
#include "MarkdownEngine/ValidUtf8.h"
#include "unit/MarkdownEngine/Utf8.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace markdown {
namespace {

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i) text.append(piece);
  return text;
}

/// Far more than any stack holds, if a level of nesting took any of it.
constexpr std::size_t depth = 300000;

TEST(Robustness, bracketsNestAsDeepAsTheInputAllows) {
  const MarkdownParser parser;
  EXPECT_EQ(parser.html(repeated("[", depth)), "<p>" + repeated("[", depth) + "</p>");
  EXPECT_EQ(parser.html(repeated("[", depth) + "a" + repeated("](b)", depth)),
            "<p>" + repeated("<a href=\"b\">", depth) + "a" + repeated("</a>", depth) + "</p>");
  EXPECT_EQ(parser.html("x " + repeated("![", depth) + repeated("](b)", depth)),
            "<p>x " + repeated("<img src=\"b\" alt=\"", depth - 1) + "<img src=\"b\"/>" +
                repeated("\"/>", depth - 1) + "</p>");
}

TEST(Robustness, listsNestAsDeepAsTheInputAllows) {
  constexpr std::size_t listDepth = 2000;
  std::string markdown;
  for (std::size_t i = 0; i < listDepth; ++i) markdown.append(i, ' ').append("- a\n");
  EXPECT_EQ(MarkdownParser().html(markdown),
            repeated("<ul><li>a", listDepth) + repeated("</li></ul>", listDepth));
}

TEST(Robustness, anOpenerThatFailsFarAheadIsNotTriedAgain) {
  // Each of these takes hours if every opener searches for itself.
  const MarkdownParser parser;
  EXPECT_EQ(parser.html(repeated("[a](", depth)), "<p>" + repeated("[a](", depth) + "</p>");
  EXPECT_EQ(parser.html(repeated("<a ", depth)).size(), 7 + depth * 6 - 1);
  EXPECT_EQ(parser.html(repeated("&a", depth)), "<p>" + repeated("&amp;a", depth) + "</p>");
  EXPECT_EQ(parser.html(repeated("[<p></p>", depth)), repeated("<p>[</p><p></p>", depth));
  EXPECT_EQ(parser.html(repeated("--x<p></p>", depth)), repeated("<p>--x</p><p></p>", depth));
}

TEST(Robustness, manyElementsThatAreNeverClosedAreReadOnce) {
  // The root of each group runs to the end of the text, and the link around it fails there. Nothing of it is
  // seen by the blocks, which begin in between.
  std::string markdown;
  std::string html;
  constexpr std::size_t groups = 20000;
  for (std::size_t i = 0; i < groups; ++i) {
    markdown += "# [  \n```  \n<b" + std::to_string(i) + ">  \n```\n";
    html += "<h1>[</h1><pre>\n&lt;b" + std::to_string(i) +
            "&gt;  \n\n<button class=\"copy-button\" onclick=\"copyCode(this)\">Copy</button>\n</pre>";
  }
  EXPECT_EQ(MarkdownParser().html(markdown), html);
}

TEST(Robustness, linksThatAnotherReadingOfTheTextHidesAreWalkedOnce) {
  std::string markdown;
  std::string html;
  constexpr std::size_t groups = 20000;
  for (std::size_t i = 0; i < groups; ++i) {
    markdown += "# [`  \n```  \nx  \n```";
    html +=
        "<h1>[`</h1><pre>\nx  \n\n<button class=\"copy-button\" "
        "onclick=\"copyCode(this)\">Copy</button>\n</pre>";
  }
  EXPECT_EQ(MarkdownParser().html(markdown), html);
}

TEST(Robustness, oneParserServesSeveralThreads) {
  const MarkdownParser parser;
  const std::string markdown = repeated("# a\n\n- *b* [c][d]\n\n[d]: e\n\n| f |\n\n", 200);
  const std::string expected = parser.html(markdown);
  std::vector<std::string> results(4);
  std::vector<std::thread> threads;
  threads.reserve(results.size());
  for (auto& result : results) threads.emplace_back([&] { result = parser.html(markdown); });
  for (auto& thread : threads) thread.join();
  for (const auto& result : results) EXPECT_EQ(result, expected);
}

TEST(ValidUtf8, everyPairOfBytesIsReadAsOneOrTwoSequences) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
      const ValidUtf8 valid(std::string_view(bytes, 2));
      const bool isAscii = first < 0x80 && second < 0x80;
      const bool isPair = first >= 0xC2 && first < 0xE0 && second >= 0x80 && second < 0xC0;
      EXPECT_EQ(valid.wasValid(), isAscii || isPair);
      EXPECT_TRUE(ValidUtf8(valid.text()).wasValid());
    }
  }
}

TEST(ValidUtf8, aBadSequenceIsFoundWhereverItStands) {
  for (const std::string bad :
       {"\x80", "\xC0\x80", "\xC3", "\xE0\x80\x80", "\xE2\x82", "\xED\xA0\x80", "\xF0\x80\x80\x80",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE1\x80\xC3\xA9"}) {
    for (const std::string good : {"x", "\u00e9", "\u20ac", "\U0001F600"}) {
      for (std::size_t before = 0; before < 40; ++before) {
        const std::string text = repeated(good, before) + bad + repeated(good, 20);
        const ValidUtf8 valid(text);
        ASSERT_FALSE(valid.wasValid()) << testing::PrintToString(text);
        ASSERT_TRUE(ValidUtf8(valid.text()).wasValid());
        ASSERT_EQ(valid.text().substr(0, good.size() * before), repeated(good, before));
        ASSERT_EQ(valid.text().substr(good.size() * before, 3), "\uFFFD");
        ASSERT_EQ(valid.text().substr(valid.text().size() - good.size() * 20), repeated(good, 20));
        ASSERT_TRUE(ValidUtf8(repeated(good, before)).wasValid());
      }
    }
  }
}

TEST(ValidUtf8, everyScalarIsValidInEveryPlace) {
  std::string text;
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (!tests::isSurrogate(scalar)) text += tests::utf8(scalar);
  }
  for (std::size_t shift = 0; shift < 17; ++shift) {
    const std::string shifted = std::string(shift, 'x') + text;
    EXPECT_TRUE(ValidUtf8(shifted).wasValid());
  }
}

}  // namespace
}  // namespace markdown
