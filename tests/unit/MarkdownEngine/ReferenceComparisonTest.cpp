#include "MarkdownEngine/MarkdownParser.h"
#include "unit/MarkdownEngine/RandomDocuments.h"
#include "unit/MarkdownEngine/reference/ReferenceEngine.h"
#include "unit/Repetitions.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace markdown::tests {
namespace {

/// More documents than a usual run compares are asked for by this variable, as a number.
std::size_t documentCount(int usual) {
  const char* const asked = std::getenv("VELKIN_RANDOM_DOCUMENTS");
  return asked == nullptr ? static_cast<std::size_t>(velkin::repetitions(usual))
                          : std::strtoul(asked, nullptr, 10);
}

std::string quoted(const std::string& text) { return testing::PrintToString(text); }

void expectSameAsReference(const std::string& document, const MarkdownParser& parser,
                           const ModifierCollection& modifiers) {
  const Markdown result = parser.parse(document);
  const auto expected = reference::parse(document, BlockquoteFrame(), modifiers);
  ASSERT_EQ(result.html, expected.html) << quoted(document);
  ASSERT_EQ(result.metadata, expected.metadata) << quoted(document);
  ASSERT_EQ(result.title(), expected.title) << quoted(document);
  ASSERT_EQ(parser.html(document), expected.html) << quoted(document);
}

TEST(ReferenceComparison, shortRandomDocumentsComeOutAsTheLiteralAlgorithmWritesThem) {
  RandomDocuments documents(20240501);
  const MarkdownParser parser;
  for (std::size_t i = 0; i < documentCount(20000); ++i) {
    expectSameAsReference(documents.next(12), parser, {});
    if (HasFatalFailure()) return;
  }
}

TEST(ReferenceComparison, longerRandomDocumentsComeOutAsTheLiteralAlgorithmWritesThem) {
  RandomDocuments documents(7);
  const MarkdownParser parser;
  for (std::size_t i = 0; i < documentCount(5000); ++i) {
    expectSameAsReference(documents.next(60), parser, {});
    if (HasFatalFailure()) return;
  }
}

TEST(ReferenceComparison, blocksThatAreWrittenBeforeTheyEndComeOutAsTheLiteralAlgorithmWritesThem) {
  RandomDocuments documents(31);
  const MarkdownParser parser;
  for (std::size_t i = 0; i < documentCount(20); ++i) {
    // The literal algorithm takes twice the time for each bracket that opens no link.
    std::string document = documents.next(40000);
    std::erase(document, '[');
    // An element that is never closed would take in all the rest.
    if (i % 4 != 0) std::erase(document, '<');
    // Without empty lines, and with few others, the blocks become huge.
    const bool isList = i % 2 == 0;
    for (std::size_t at = document.find('\n'); at != std::string::npos; at = document.find('\n', at + 1)) {
      if (i % 3 != 0) document.replace(at, 1, isList ? "\n- " : "x");
    }
    document.insert(0, isList ? "- " : i % 5 == 0 ? "> " : "x");
    expectSameAsReference(document, parser, {});
    if (HasFatalFailure()) return;
  }
}

TEST(ReferenceComparison, markersThatAreWrittenBeforeTheyAreDecidedAreCorrected) {
  std::string filler;
  for (int i = 0; i < 5000; ++i) filler += ">";
  const MarkdownParser parser;
  for (const std::string start : {"", "- ", "> "}) {
    for (const std::string before : {"*", "**", "~~", "*a **", "**a *", "**a ~~b *", "~~a _", "***"}) {
      for (const std::string behind : {"", "*", "**", "~~", "*a ~~", "~~a **", "***", " [x][r]\n\n[r]: v"}) {
        std::string document = start;
        document.append("x ").append(before).append(filler).append("[y][r]").append(filler).append(behind);
        expectSameAsReference(document, parser, {});
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(ReferenceComparison, modifiersSeeWhatTheLiteralAlgorithmShowsThem) {
  std::vector<Modifier> modifiers;
  for (std::size_t target = 0; target < Modifier::targetCount; ++target) {
    const auto mark = [target](const std::string& html, std::string_view raw) {
      std::string marked = std::to_string(target);
      return marked.append("{").append(html).append("|").append(raw).append("}");
    };
    modifiers.push_back({static_cast<Modifier::Target>(target), mark});
  }
  RandomDocuments documents(99);
  const MarkdownParser parser(modifiers);
  const ModifierCollection collection(modifiers);
  for (std::size_t i = 0; i < documentCount(5000); ++i) {
    expectSameAsReference(documents.next(20), parser, collection);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace markdown::tests
