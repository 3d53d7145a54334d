#include "Markdown/MarkdownModifierHelper.h"
#include "Platform/FatalError.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "unit/Repetitions.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSRange;
using platform::NSTextView;
using enum ModifierType;
using Failure = platform::NSPasteboardReading::Failure;

class MarkdownModifierHelperTest : public testing::Test {
 protected:
  /// A fresh editor with this text. "<" and ">" around a part of it select that; a "|" is the cursor.
  void write(std::string text) {
    helper.reset();
    editor = std::make_unique<platform::HeadlessTextView>();
    const auto cursor = text.find('|');
    const auto open = text.find('<');
    NSRange range{0, 0};
    if (cursor != std::string::npos) {
      text.erase(cursor, 1);
      range = {cursor, 0};
    } else if (open != std::string::npos) {
      const auto close = text.find('>');
      text.erase(close, 1).erase(open, 1);
      range = {open, close - open - 1};
    }
    editor->setString(text, NSTextView::UndoHistory::forgotten);
    editor->setSelectedRange(range);
    helper = std::make_unique<MarkdownModifierHelper>(*editor);
  }
  /// The text with the cursor in it.
  std::string shown() {
    desktop.queue.drain();
    EXPECT_EQ(editor->selectedRange().length, 0U);
    auto text = editor->string();
    return text.insert(editor->selectedRange().location, "|");
  }

  platform::HeadlessPlatform desktop;
  std::unique_ptr<platform::HeadlessTextView> editor;
  std::unique_ptr<MarkdownModifierHelper> helper;
};

TEST_F(MarkdownModifierHelperTest, EachKindHasItsMarkdown) {
  const std::vector<std::string> markers = {"**", "```", "`", "---", "*", "[]()", "![]()", ">", "~~"};
  for (std::size_t i = 0; i < markers.size(); ++i)
    EXPECT_EQ(modifierString(static_cast<ModifierType>(i)), markers[i]);
  const std::vector<std::string> fills = {"Cell", "------", "Header", "Row"};
  for (std::size_t i = 0; i < fills.size(); ++i)
    EXPECT_EQ(fillString(static_cast<ModifierTableRowType>(i)), fills[i]);
}

TEST_F(MarkdownModifierHelperTest, MarkersGoAroundTheSelectionOrBothSidesOfTheCursor) {
  for (const auto& [type, marker] : std::vector<std::pair<ModifierType, std::string>>{
           {bold, "**"}, {italics, "*"}, {strikethrough, "~~"}, {codeInline, "`"}}) {
    write("x<a>y");
    helper->modifierClicked(type);
    EXPECT_EQ(shown(), "x" + marker + "a" + marker + "|y");
    write("x|y");
    helper->modifierClicked(type);
    EXPECT_EQ(shown(), "x" + marker + "|" + marker + "y");
  }
}

TEST_F(MarkdownModifierHelperTest, ASecondClickWrapsAgain) {
  write("<a>");
  helper->modifierClicked(bold);
  editor->setSelectedRange({0, 5});
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "****a****|");
}

TEST_F(MarkdownModifierHelperTest, WhatIsOnThePasteboardIsTheSelectionWhereNothingIsSelected) {
  desktop.pasteboard.string = "x";
  write("|");
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "**x**|");
  EXPECT_FALSE(desktop.pasteboard.string.has_value());
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "**x****|**") << "it is empty from then on";
}

TEST_F(MarkdownModifierHelperTest, TheSelectionGoesBeforeThePasteboardWhichIsEmptyAfterwards) {
  desktop.pasteboard.string = "elsewhere";
  write("<ä😀>");
  editor->setSelectedRange({0, 2});
  helper->modifierClicked(italics);
  EXPECT_EQ(editor->string(), "*ä😀*");
  EXPECT_FALSE(desktop.pasteboard.string.has_value());
}

TEST_F(MarkdownModifierHelperTest, OfSeveralItemsTheLastOneCounts) {
  desktop.pasteboard.otherItems = {{"first"}};
  desktop.pasteboard.string = "last";
  write("|");
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "**last**|");
  desktop.pasteboard.otherItems = {{"first"}, {std::nullopt}};
  write("|");
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "**|**") << "the last one is a picture";
  EXPECT_TRUE(desktop.pasteboard.otherItems.empty());
}

TEST_F(MarkdownModifierHelperTest, AnEmptyTextOnThePasteboardIsASelectionToo) {
  desktop.pasteboard.string = "";
  write("|");
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "****|");
}

TEST_F(MarkdownModifierHelperTest, AnOwnerThatGivesNothingLeavesNoSelection) {
  for (const auto failure : {Failure::noAnswer, Failure::unreadable}) {
    desktop.pasteboard.failure = failure;
    write("|");
    helper->modifierClicked(bold);
    EXPECT_EQ(shown(), "**|**");
  }
}

TEST_F(MarkdownModifierHelperTest, WhatIsTooLongIsRefusedAndNothingChanges) {
  std::vector<NSTextView::Refusal> refusals;
  desktop.pasteboard.failure = Failure::tooLong;
  desktop.pasteboard.string = "x";
  write("a|");
  editor->didRefuse = [&](NSTextView::Refusal reason) { refusals.push_back(reason); };
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "a|");
  EXPECT_EQ(refusals, std::vector{NSTextView::Refusal::tooLong});
  EXPECT_TRUE(desktop.pasteboard.string.has_value());
  desktop.pasteboard.failure.reset();
  desktop.pasteboard.string = std::string(NSTextView::maximumBytes - 2, 'x');
  helper->modifierClicked(bold);
  EXPECT_EQ(shown(), "a|");
  EXPECT_EQ(refusals.size(), 2U);
  EXPECT_TRUE(desktop.pasteboard.string.has_value());
}

TEST_F(MarkdownModifierHelperTest, ACodeBlock) {
  write("x<a>y");
  helper->modifierCodeBlockClicked(codeBlock);
  EXPECT_EQ(shown(), "x\n\n```\na\n```|y");
  write("x|y");
  helper->modifierCodeBlockClicked(codeBlock);
  EXPECT_EQ(shown(), "x```\n|\n```y");
}

TEST_F(MarkdownModifierHelperTest, AQuoteHasABlankInFrontOfIt) {
  write("x<a>y");
  helper->modifierQuoteBlockClicked(quoteBlock);
  EXPECT_EQ(shown(), "x\n > a|y");
  write("x|y");
  helper->modifierQuoteBlockClicked(quoteBlock);
  EXPECT_EQ(shown(), "x\n > |y");
}

TEST_F(MarkdownModifierHelperTest, ADividerTakesThePlaceOfASelection) {
  write("x<a>y");
  helper->modifierDividerClicked(divider);
  EXPECT_EQ(shown(), "x\n---\n|y");
  desktop.pasteboard.string = "elsewhere";
  write("x|y");
  helper->modifierDividerClicked(divider);
  EXPECT_EQ(shown(), "x\n---\n|y");
  EXPECT_FALSE(desktop.pasteboard.string.has_value());
}

TEST_F(MarkdownModifierHelperTest, AHeaderOfASelectionStandsInBrackets) {
  write("<Title>");
  helper->modifierHeaderClicked(2);
  EXPECT_EQ(shown(), "[\n\n## Title]|");
  write("|");
  helper->modifierHeaderClicked(3);
  EXPECT_EQ(shown(), "### |");
}

TEST_F(MarkdownModifierHelperTest, ALinkHasTheCursorWhereSomethingIsMissing) {
  write("<a>");
  helper->modifierLinkClicked(link);
  EXPECT_EQ(shown(), "[a](|)");
  write("|");
  helper->modifierLinkClicked(link);
  EXPECT_EQ(shown(), "[|]()");
  write("<a>");
  helper->modifierLinkClicked(photo);
  EXPECT_EQ(shown(), "[a](|)") << "an image of a selection is a plain link";
  write("|");
  helper->modifierLinkClicked(photo);
  EXPECT_EQ(shown(), "![|]()");
  write("<a>");
  helper->modifierPhotoClicked(photo);
  EXPECT_EQ(shown(), "![a](|)");
}

TEST_F(MarkdownModifierHelperTest, ATable) {
  write("|");
  helper->modifierTableClicked(2, 1, true);
  EXPECT_EQ(shown(), "| Header1 | Header2 |\n| ------ | ------ |\n| Row1 | Cell1 |\n|");
  desktop.pasteboard.string = "elsewhere";
  write("x<a>y");
  helper->modifierTableClicked(2, 1, false);
  EXPECT_EQ(shown(), "x| Row1 | Cell1 |\n|y");
  EXPECT_FALSE(desktop.pasteboard.string.has_value());
  write("|");
  helper->modifierTableClicked(1, 2, true);
  EXPECT_EQ(shown(), "| Header1 |\n| ------ |\n| Row1 |\n| Row2 |\n|");
  EXPECT_EQ(MarkdownModifierHelper::getTableRow(ModifierTableRowType::row, 3, 2),
            "| Row2 | Cell1 | Cell2 |\n");
  write("|");
  helper->modifierTableClicked(12, 12, true);
  const auto text = editor->string();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 14);
}

TEST_F(MarkdownModifierHelperTest, AClickIsOneStepOfUndo) {
  write("x<a>y");
  helper->modifierCodeBlockClicked(codeBlock);
  editor->undo();
  EXPECT_EQ(editor->string(), "xay");
  editor->redo();
  EXPECT_EQ(editor->string(), "x\n\n```\na\n```y");
}

TEST_F(MarkdownModifierHelperTest, KeysAndClicksComeAfterTheInsertionsThatTheyFollow) {
  desktop.pasteboard.string = "far";
  write("|");
  helper->modifierLinkClicked(link);
  editor->type("a");
  helper->modifierClicked(bold);
  editor->type("b");
  EXPECT_EQ(editor->string(), "") << "the pasteboard is still being read";
  EXPECT_EQ(shown(), "[far](**ab|**)") << "clicks wait for what is read, and keys for both";
}

TEST_F(MarkdownModifierHelperTest, AHelperMayGoWhileItReads) {
  desktop.pasteboard.string = "x";
  write("a|");
  helper->modifierClicked(bold);
  helper.reset();
  editor->type("b");
  EXPECT_EQ(shown(), "ab|");
}

/// The same in the words of the tables, on a string of code points.
struct Model {
  std::u32string text;
  std::size_t start = 0;
  std::size_t length = 0;
  std::optional<std::u32string> pasteboard;

  void paste(const std::u32string& pasted) {
    text = text.substr(0, start) + pasted + text.substr(start + length);
    start += pasted.size();
    length = 0;
    pasteboard.reset();
  }
  std::optional<std::u32string> copy() {
    if (length > 0) pasteboard = text.substr(start, length);
    return pasteboard;
  }
  void wrap(const std::u32string& m) {
    const auto s = copy();
    paste(s ? m + *s + m : m + m);
    if (!s) start -= m.size();
  }
  void code() {
    const auto s = copy();
    paste(s ? U"\n\n```\n" + *s + U"\n```" : U"```\n\n```");
    if (s) return;
    start -= 3;
    while (start > 0 && text[start - 1] != U'\n') --start;
    start -= 1;
  }
  void quote() {
    const auto s = copy();
    paste(s ? U"\n > " + *s : U"\n > ");
  }
  void header(std::size_t level) {
    const auto s = copy();
    const std::u32string h(level, U'#');
    paste(s ? U"[\n\n" + h + U" " + *s + U"]" : h + U" ");
  }
  void anchor(const std::u32string& opening, const std::u32string& m) {
    const auto s = copy();
    paste(s ? opening + *s + U"]()" : m);
    start -= s ? 1 : 3;
  }
};

std::string utf8(const std::u32string& text) {
  platform::HeadlessTextView encoder;
  std::string bytes;
  for (const char32_t c : text) {
    if (c < 0x80) {
      bytes += static_cast<char>(c);
    } else if (c < 0x800) {
      bytes += static_cast<char>(0xC0 | (c >> 6));
      bytes += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      bytes += static_cast<char>(0xF0 | (c >> 18));
      bytes += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      bytes += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      bytes += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return bytes;
}

TEST_F(MarkdownModifierHelperTest, AnyOrderOfOperationsIsAsTheTablesSay) {
  const std::vector<std::u32string> words = {U"a", U"\n", U"ä", U"😀", U"one two", U"**", U"["};
  for (int round = 0; round < repetitions(300); ++round) {
    std::mt19937 random(static_cast<unsigned>(round));
    const auto below = [&](std::size_t n) { return random() % n; };
    write("|");
    desktop.pasteboard.clearContents();
    Model model;
    std::vector<Model> earlier;
    std::vector<Model> later;
    for (int step = 0; step < 30; ++step) {
      const Model before = model;
      bool isEdit = true;
      switch (below(14)) {
        case 0: {
          const auto word = words[below(words.size())];
          const auto kept = model.pasteboard;
          model.paste(word);
          model.pasteboard = kept;
          editor->type(utf8(word));
          break;
        }
        case 1:
        case 2:
          isEdit = false;
          model.start = below(model.text.size() + 1);
          model.length = below(2) == 0 ? 0 : below(model.text.size() - model.start + 1);
          editor->setSelectedRange({model.start, model.length});
          break;
        case 3:
          isEdit = false;
          model.pasteboard = words[below(words.size())];
          desktop.pasteboard.string = utf8(*model.pasteboard);
          break;
        case 4:
          model.wrap(U"**");
          helper->modifierClicked(bold);
          break;
        case 5:
          model.wrap(U"~~");
          helper->modifierClicked(strikethrough);
          break;
        case 6:
          model.code();
          helper->modifierCodeBlockClicked(codeBlock);
          break;
        case 7:
          model.quote();
          helper->modifierQuoteBlockClicked(quoteBlock);
          break;
        case 8:
          model.copy();
          model.paste(U"\n---\n");
          helper->modifierDividerClicked(divider);
          break;
        case 9: {
          const auto level = below(6) + 1;
          model.header(level);
          helper->modifierHeaderClicked(static_cast<int>(level));
          break;
        }
        case 10:
          model.anchor(U"[", U"![]()");
          helper->modifierLinkClicked(photo);
          break;
        case 11:
          model.copy();
          model.paste(U"| Row1 | Cell1 |\n");
          helper->modifierTableClicked(2, 1, false);
          break;
        case 12:
          isEdit = false;
          if (!earlier.empty()) {
            later.push_back(model);
            model.text = earlier.back().text;
            earlier.pop_back();
          }
          editor->undo();
          model.start = editor->selectedRange().location;
          model.length = editor->selectedRange().length;
          break;
        default:
          isEdit = false;
          if (!later.empty()) {
            earlier.push_back(model);
            model.text = later.back().text;
            later.pop_back();
          }
          editor->redo();
          model.start = editor->selectedRange().location;
          model.length = editor->selectedRange().length;
      }
      if (isEdit) {
        earlier.push_back(before);
        later.clear();
      }
      desktop.queue.drain();
      ASSERT_EQ(editor->string(), utf8(model.text)) << "round " << round << ", step " << step;
      ASSERT_EQ(editor->selectedRange(), (NSRange{model.start, model.length})) << "round " << round;
      ASSERT_EQ(desktop.pasteboard.string.has_value(), model.pasteboard.has_value()) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace velkin
