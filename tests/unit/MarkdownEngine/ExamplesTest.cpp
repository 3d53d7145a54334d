#include "MarkdownEngine/MarkdownParser.h"
#include "unit/MarkdownEngine/Examples.h"
#include "unit/MarkdownEngine/reference/ReferenceEngine.h"

#include <gtest/gtest.h>

namespace markdown::tests {
namespace {

TEST(Examples, theDataFolderHoldsThem) { EXPECT_GT(readExamples().size(), 200U); }

TEST(Examples, theEngineWritesTheHtmlOfEachExample) {
  const MarkdownParser parser;
  for (const Example& example : readExamples()) {
    EXPECT_EQ(parser.html(example.markdown), example.html) << example.name;
  }
}

TEST(Examples, theLiteralEngineWritesTheHtmlOfEachExample) {
  for (const Example& example : readExamples()) {
    EXPECT_EQ(reference::parse(example.markdown, {}, {}).html, example.html) << example.name;
  }
}

TEST(Examples, escapesInQuotesAreResolved) {
  EXPECT_EQ(unquoted(R"("a\n\r\t\\\"\u{e9}\u{1F468}")"), "a\n\r\t\\\"\u00e9\U0001F468");
  EXPECT_THROW(static_cast<void>(unquoted("a")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(unquoted(R"("\x")")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(unquoted(R"("a"b")")), std::runtime_error);
}

}  // namespace
}  // namespace markdown::tests
