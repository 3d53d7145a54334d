#include "MarkdownEngine/MarkdownParser.h"

#include <map>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace markdown {
namespace {

using Values = std::map<std::string, std::string>;

Values metadataOf(std::string_view markdown) { return MarkdownParser().parse(markdown).metadata; }

Modifier wrapping(Modifier::Target target, const std::string& mark) {
  return {target, [mark](const std::string& html, std::string_view) {
            return std::string(mark).append(html).append(mark);
          }};
}

TEST(MarkdownParser, readsMetadata) {
  const Markdown result = MarkdownParser().parse("---\ntitle: A\n---\n\nText");
  EXPECT_EQ(result.metadata, (Values{{"title", "A"}}));
  EXPECT_EQ(result.html, "<p>Text</p>");
}

TEST(MarkdownParser, trimsMetadataAndGoesOnWithAValueOnALineWithoutColon) {
  EXPECT_EQ(metadataOf("---\n a b :  c d  \n  goes on \n\nstill\n---"),
            (Values{{"a b", "c d goes on still"}}));
}

TEST(MarkdownParser, dropsAKeyWithoutValueAndKeepsTheOneBeforeAsTheLast) {
  EXPECT_EQ(metadataOf("---\na: b\nc:\nd\n---"), (Values{{"a", "b d"}}));
  EXPECT_EQ(metadataOf("---\nnothing yet\na: b\n---"), (Values{{"a", "b"}}));
}

TEST(MarkdownParser, letsAMetadataKeyBeEmptyAndALaterValueReplaceAnEarlierOne) {
  EXPECT_EQ(metadataOf("---\n: a\nb: c\nb: d: e\n---"), (Values{{"", "a"}, {"b", "d: e"}}));
}

TEST(MarkdownParser, hasNoMetadataWithoutAHeader) {
  EXPECT_TRUE(metadataOf("a: b").empty());
  EXPECT_TRUE(metadataOf("---\na: b").empty());
  EXPECT_TRUE(metadataOf("x\n\n---\na: b\n---").empty());
}

TEST(MarkdownParser, takesTheFirstHeadingOfLevelOneForTitle) {
  EXPECT_EQ(MarkdownParser().parse("## A\n# B\n# C").title(), "B");
  EXPECT_EQ(MarkdownParser().parse("# *a* `b<c` [d](e) \\f & g ##").title(), "a b&lt;c d f &amp; g");
  EXPECT_EQ(MarkdownParser().parse("## A").title(), std::nullopt);
}

TEST(Markdown, titleOutlivesTheInputAndIsSharedByCopies) {
  Markdown first;
  {
    const std::string input = "# A rather long heading that lives in memory of its own & ends";
    first = MarkdownParser().parse(input);
  }
  const Markdown second = first;
  EXPECT_EQ(second.title(), "A rather long heading that lives in memory of its own &amp; ends");
}

TEST(Markdown, aTitleThatIsSetIsTheCopysOwn) {
  const Markdown first = MarkdownParser().parse("# A");
  Markdown second = first;
  second.setTitle("B");
  EXPECT_EQ(second.title(), "B");
  EXPECT_EQ(first.title(), "A");
  second.setTitle(std::nullopt);
  EXPECT_EQ(second.title(), "A") << "it falls back on the heading";
}

TEST(Modifiers, runInTheOrderOfTheirInsertion) {
  MarkdownParser parser({wrapping(Modifier::Target::headings, "1")});
  parser.addModifier(wrapping(Modifier::Target::headings, "2"));
  parser.addModifier(wrapping(Modifier::Target::paragraphs, "3"));
  EXPECT_EQ(parser.html("# a\n\nb"), "21<h1>a</h1>123<p>b</p>3");
}

TEST(Modifiers, seeTheFinishedHtmlAndTheMarkdown) {
  const auto show = [](const std::string& html, std::string_view markdown) {
    return std::string("{").append(html).append("|").append(markdown).append("}");
  };
  const MarkdownParser parser({{Modifier::Target::links, show}, {Modifier::Target::inlineCode, show}});
  EXPECT_EQ(parser.html("[a `<`][r]\n\n[r]: u"),
            "<p>{<a href=\"u\">a {<code>&lt;</code>|`<`}</a>|[a `<`][r]}</p>");
}

TEST(Modifiers, seeTheLastDeclarationOfAName) {
  const MarkdownParser parser({wrapping(Modifier::Target::links, "!")});
  EXPECT_EQ(parser.html("[r]: u\n[x][r]\n\n[r]: v"), "<p>!<a href=\"v\">x</a>!</p>");
}

TEST(Modifiers, reachEachElement) {
  const std::string document =
      "> a\n\n```\nb\n```\n# c\n---\n<d/>\n\n![e](f)\n\n`g` [h](i)\n\n- j\n  - k\n\n| l |\n";
  struct Case {
    Modifier::Target target;
    std::size_t times;
  };
  for (const auto& [target, times] :
       {Case{Modifier::Target::blockquotes, 1}, Case{Modifier::Target::codeBlocks, 1},
        Case{Modifier::Target::headings, 1}, Case{Modifier::Target::horizontalLines, 1},
        Case{Modifier::Target::html, 1}, Case{Modifier::Target::images, 1},
        Case{Modifier::Target::inlineCode, 1}, Case{Modifier::Target::links, 1},
        Case{Modifier::Target::lists, 1}, Case{Modifier::Target::paragraphs, 1},
        Case{Modifier::Target::tables, 1}}) {
    std::size_t calls = 0;
    const MarkdownParser parser({{target, [&calls](const std::string& html, std::string_view) {
                                    ++calls;
                                    return html;
                                  }}});
    EXPECT_EQ(parser.html(document), MarkdownParser().html(document));
    EXPECT_EQ(calls, times) << static_cast<int>(target);
  }
}

TEST(Modifiers, changeTheKeysAndThenTheValuesOfMetadata) {
  const MarkdownParser parser(
      {wrapping(Modifier::Target::metadataValues, "v"), wrapping(Modifier::Target::metadataKeys, "k")});
  EXPECT_EQ(parser.parse("---\na: b\n---").metadata, (Values{{"kak", "vbv"}}));
}

TEST(MarkdownParser, asksForTheBlockquotesFrameAtEachConversion) {
  int asked = 0;
  const MarkdownParser parser(MarkdownParser::Options{.blockquoteFrame = [&asked] {
    return BlockquoteFrame{std::to_string(++asked), "."};
  }});
  EXPECT_EQ(parser.html("> a\n\n> b"), "1a.1b.");
  EXPECT_EQ(parser.html("> a"), "2a.");
}

TEST(MarkdownParser, readsBadUtf8WithReplacementsAndLetsEveryValidScalarThrough) {
  const MarkdownParser parser;
  EXPECT_EQ(parser.html("a\xFFz"), "<p>a\uFFFDz</p>");
  EXPECT_EQ(parser.html("a\xE2\x82"), "<p>a\uFFFD</p>");
  EXPECT_EQ(parser.html("\xF0\x9F\x98*b*"), "<p>\uFFFD<em>b</em></p>");
  EXPECT_EQ(parser.html("\xED\xA0\x80"), "<p>\uFFFD\uFFFD\uFFFD</p>");
  EXPECT_EQ(parser.html("\xC0\xAF"), "<p>\uFFFD\uFFFD</p>");
  EXPECT_EQ(parser.html("\xF4\x90\x80\x80"), "<p>\uFFFD\uFFFD\uFFFD\uFFFD</p>");
  EXPECT_EQ(parser.html(std::string_view("a\0b", 3)), std::string("<p>a\0b</p>", 10));
}

TEST(MarkdownParser, boundsWhatShortRowsAreFilledUpWith) {
  std::string wide;
  for (int i = 0; i < 20000; ++i) wide += "| a ";
  std::string document = wide + "|\n";
  for (int i = 0; i < 20000; ++i) document += "|b|\n";
  const std::string html = MarkdownParser().html(document);
  // All cells that are there come out; what would fill up the rows, four hundred million cells, doesn't.
  EXPECT_LT(html.size(), std::size_t{64} << 20);
  EXPECT_NE(html.find("<td>b</td><td></td>"), std::string::npos);
  EXPECT_THAT(html, testing::EndsWith("<tr><td>b</td></tr></tbody></table>"));
}

TEST(MarkdownParser, boundsWhatDeclaredAddressesAddUpTo) {
  std::string document = "[a]: " + std::string(100000, 'u') + "\n\n";
  for (int i = 0; i < 20000; ++i) document += "[x][a]";
  const std::string html = MarkdownParser().html(document);
  EXPECT_LT(html.size(), std::size_t{64} << 20);
  EXPECT_NE(html.find("<a href=\"uuu"), std::string::npos);
  EXPECT_THAT(html, testing::EndsWith("<a href=\"a\">x</a></p>"));
}

}  // namespace
}  // namespace markdown
