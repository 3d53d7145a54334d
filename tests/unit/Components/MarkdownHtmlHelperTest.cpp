#include "Components/MarkdownHtmlHelper.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

/// The page with every run of white space as one blank, as white space in the style sheet has no meaning.
std::string page(bool isDarkMode, std::string_view fragment = "") {
  std::string result;
  for (const char byte : MarkdownHtmlHelper(isDarkMode).makeHTMLString(fragment)) {
    const bool isSpace = std::isspace(static_cast<unsigned char>(byte)) != 0;
    if (!isSpace) result.push_back(byte);
    if (isSpace && (result.empty() || result.back() != ' ')) result.push_back(' ');
  }
  return result;
}

void expectInOrder(const std::string& text, const std::vector<std::string>& pieces) {
  std::size_t position = 0;
  for (const std::string& piece : pieces) {
    const std::size_t found = text.find(piece, position);
    ASSERT_NE(found, std::string::npos) << piece;
    position = found + piece.size();
  }
}

TEST(MarkdownHtmlHelper, aQuoteHasExactlyThisForm) {
  EXPECT_EQ(
      MarkdownHtmlHelper(true).makeQuoteHTMLString("a <b>"),
      "<blockquote \n    style=\"background: black;\n    border-radius: 10px;\n    border-left: 3px solid "
      "#834C49;\n"
      "    color: #E6EDF3;\n    padding: 0.2em 0.2em 0.2em;\n    line-height: 1.2;\">\n    <p>a <b></p>\n"
      "</blockquote>");
  EXPECT_EQ(MarkdownHtmlHelper(false).makeQuoteHTMLString(""),
            "<blockquote \n    style=\"background: white;\n    border-radius: 10px;\n    border-left: 3px "
            "solid #834C49;\n"
            "    color: #333344;\n    padding: 0.2em 0.2em 0.2em;\n    line-height: 1.2;\">\n    "
            "<p></p>\n</blockquote>");
}

TEST(MarkdownHtmlHelper, theDarkPageHoldsItsRulesInOrder) {
  expectInOrder(
      page(true, "<p>fragment</p>"),
      {"<!DOCTYPE html>",
       "<html>",
       "<head>",
       "<style>",
       "/* Link (regular, visited) */",
       "a:link { color: #2F81F7; }",
       "a:visited { color: #2F815C; }",
       "/* Style for inline code blocks */",
       "code {",
       "font-family: -apple-system, BlinkMacSystemFont, \"Segoe UI\", Roboto, Helvetica, monospace;",
       "background-color: #484C53;",
       "border-radius: 5px;",
       "color: #E6EDF3;",
       "font-size: 0.85em;",
       "padding: 0.2em 0.4em;",
       "display: inline-block;",
       "word-wrap: break-word;",
       "/* Style for block code blocks */",
       "pre {",
       "font-family: -apple-system, BlinkMacSystemFont, \"Segoe UI\", Roboto, Helvetica, monospace;",
       "background-color: #20242A;",
       "border: 1px solid #ddd;",
       "border-left: 3px solid #555555;",
       "border-radius: 5px;",
       "page-break-inside: avoid;",
       "font-size: 15px;",
       "line-height: 1.6;",
       "margin-bottom: 0em;",
       "max-width: 100%;",
       "overflow: auto;",
       "padding: 0.5em 0.5em 0;",
       "display: block;",
       "word-wrap: break-word;",
       "position: relative;",
       "/* Style for the copy button */",
       ".copy-button {",
       "position: absolute;",
       "top: 8px;",
       "right: 8px;",
       "z-index: 10;",
       "cursor: pointer;",
       "padding: 5px;",
       "color: #20242A;",
       "background-color: #EEEEEE;",
       "border: none;",
       "border-radius: 3px;",
       "font-size: 12px;",
       "/* Style for strikethrough text */",
       "del {",
       "text-decoration: line-through;",
       "table {",
       "border-collapse: collapse;",
       "border-radius: 3px;",
       "border-color: #0D1117;",
       "width: 100%;",
       "th, td {",
       "border: 1px solid #0D1117;",
       "background-color: #0D1117;",
       "padding: 8px;",
       "th {",
       "background-color: #0D1117;",
       "color: #E6EDF3;",
       "text-align: left;",
       "tr:nth-child(even){background-color: #2A3338}",
       "tr:hover {background-color: #555;}",
       "td {",
       "color: #E6EDF3;",
       "body {",
       "font-family: -apple-system, BlinkMacSystemFont, \"Segoe UI\", Roboto, Helvetica;",
       "background-color: #161B22;",
       "color: #E6EDF3;",
       "</style>",
       "</head>",
       "<body>",
       "<p>fragment</p>",
       "<script>",
       "function copyCode(button)",
       "parentNode",
       "document.createRange()",
       "range.selectNode(pre.querySelector('code'))",
       "window.getSelection().addRange(range)",
       "try",
       "document.execCommand('copy')",
       "'successful'",
       "'unsuccessful'",
       "'Copy command was '",
       "catch",
       "'Oops, unable to copy'",
       "window.getSelection().removeAllRanges()",
       "</script>",
       "</body>",
       "</html>"});
}

TEST(MarkdownHtmlHelper, darkAndLightPagesDifferInTheirColoursOnly) {
  std::string light = page(false);
  std::string dark = page(true);
  const auto replace = [](std::string& text, std::string_view from, std::string_view to) {
    std::size_t count = 0;
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()), ++count) {
      text.replace(at, from.size(), to);
    }
    return count;
  };
  EXPECT_EQ(replace(dark, "#0D1117", "#D4D2D1"), 4U);
  EXPECT_EQ(replace(dark, "#161B22", "#F0F0F4"), 1U);
  EXPECT_EQ(replace(dark, "#E6EDF3", "#333344"), 4U);
  EXPECT_EQ(replace(dark, "#484C53", "#DDDDEE"), 1U);
  EXPECT_EQ(replace(dark, "#20242A", "white"), 2U);
  EXPECT_EQ(replace(dark, "#EEEEEE", "#333344"), 1U);
  EXPECT_EQ(dark, light);
}

TEST(MarkdownHtmlHelper, anEmptyFragmentGivesACompletePage) {
  expectInOrder(page(false), {"<!DOCTYPE html>", "<body> <script>", "</script> </body> </html>"});
}

TEST(MarkdownHtmlHelper, aQuotesColoursAreThoseOfTheMomentOfConversion) {
  bool isDark = false;
  const markdown::MarkdownParser parser = MarkdownHtmlHelper::makeParser([&isDark] { return isDark; });
  EXPECT_EQ(parser.html("> a"), MarkdownHtmlHelper(false).makeQuoteHTMLString("a"));
  isDark = true;
  EXPECT_EQ(parser.html("> a"), MarkdownHtmlHelper(true).makeQuoteHTMLString("a"));
  EXPECT_EQ(MarkdownHtmlHelper::makeParser(true).html("> a"),
            MarkdownHtmlHelper(true).makeQuoteHTMLString("a"));
}

TEST(MarkdownHtmlHelperTest, followsTheDesktopsColouring) {
  platform::HeadlessPlatform desktop;
  const auto parser = MarkdownHtmlHelper::makeParser();
  EXPECT_EQ(MarkdownHtmlHelper().makeHTMLString("x"), MarkdownHtmlHelper(false).makeHTMLString("x"));
  EXPECT_EQ(parser.html("> a"), MarkdownHtmlHelper(false).makeQuoteHTMLString("a"));
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameVibrantDark};
  EXPECT_EQ(MarkdownHtmlHelper().makeHTMLString("x"), MarkdownHtmlHelper(true).makeHTMLString("x"));
  EXPECT_EQ(parser.html("> a"), MarkdownHtmlHelper(true).makeQuoteHTMLString("a"));
}

TEST(MarkdownHtmlHelper, itsScriptsAreThoseOfThePageToTheLetter) {
  const auto scripts = MarkdownHtmlHelper::pageScripts();
  ASSERT_EQ(scripts.size(), 2U);
  const auto page = MarkdownHtmlHelper(false).makeHTMLString(
      MarkdownHtmlHelper::makeParser(false).html("```\ncode\n```\n"));
  EXPECT_NE(page.find("<script>" + scripts[0] + "</script>"), std::string::npos);
  EXPECT_NE(page.find("onclick=\"" + scripts[1] + "\""), std::string::npos);
}

}  // namespace
}  // namespace velkin
