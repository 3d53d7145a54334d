#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSPasteboard.h"
#include "Platform/NSTextView.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

class NSTextViewTest : public testing::Test {
 protected:
  NSTextViewTest() {
    editor->textDidChange = [this] { texts.push_back(editor->string()); };
    editor->didRefuse = [this](NSTextView::Refusal reason) { refusals.push_back(reason); };
  }
  HeadlessTextView& hands() { return *desktop.textViews.front(); }

  HeadlessPlatform desktop;
  std::unique_ptr<NSTextView> editor = NSTextView::make();
  std::vector<std::string> texts;
  std::vector<NSTextView::Refusal> refusals;
};

using Texts = std::vector<std::string>;
using History = NSTextView::UndoHistory;

TEST_F(NSTextViewTest, RangesCountCodePoints) {
  editor->setString("aä😀b");
  EXPECT_TRUE(editor->insertText("X", {2, 1}));
  EXPECT_EQ(editor->string(), "aäXb");
  EXPECT_EQ(editor->selectedRange(), (NSRange{3, 0}));
}

TEST_F(NSTextViewTest, AnInsertionIsOneStepOfUndo) {
  editor->setString("one two");
  editor->insertText("2", {4, 3});
  EXPECT_EQ(editor->string(), "one 2");
  editor->undo();
  EXPECT_EQ(editor->string(), "one two");
  editor->redo();
  EXPECT_EQ(editor->string(), "one 2");
  EXPECT_FALSE(editor->canRedo());
}

TEST_F(NSTextViewTest, ATextFromOutsideKeepsUndoUnlessItIsToBeForgotten) {
  editor->setString("first");
  editor->setString("second");
  EXPECT_TRUE(editor->canUndo());
  editor->undo();
  EXPECT_EQ(editor->string(), "first");
  editor->setString("third", History::forgotten);
  EXPECT_FALSE(editor->canUndo());
  EXPECT_FALSE(editor->canRedo());
}

TEST_F(NSTextViewTest, EachChangeIsToldOnceAndNoChangeNever) {
  editor->setString("a");
  editor->setString("a");
  editor->insertText("b", {1, 0});
  editor->insertText("", {1, 0});
  editor->undo();
  EXPECT_EQ(texts, (Texts{"a", "ab", "a"}));
}

TEST_F(NSTextViewTest, WhatLiesBeyondTheEndIsCutOff) {
  editor->setString("abc");
  editor->setSelectedRange({2, 100});
  EXPECT_EQ(editor->selectedRange(), (NSRange{2, 1}));
  editor->setSelectedRange({50, 1});
  EXPECT_EQ(editor->selectedRange(), (NSRange{3, 0}));
  editor->insertText("d", {9, 9});
  EXPECT_EQ(editor->string(), "abcd");
}

TEST_F(NSTextViewTest, WhatIsNoTextIsReplaced) {
  editor->setString(std::string("a\0b\xFF", 4));
  EXPECT_EQ(editor->string(), "a\uFFFDb\uFFFD");
}

TEST_F(NSTextViewTest, MoreThanTheLimitIsRefusedAsAWhole) {
  editor->setString(std::string(NSTextView::maximumBytes, 'x'));
  texts.clear();
  EXPECT_FALSE(editor->insertText("y", {0, 0}));
  EXPECT_TRUE(editor->insertText("y", {0, 1}));
  EXPECT_FALSE(editor->setString(std::string(NSTextView::maximumBytes + 1, 'z')));
  EXPECT_EQ(refusals.size(), 2U);
  EXPECT_EQ(texts.size(), 1U);
}

TEST_F(NSTextViewTest, CopyWithNothingSelectedKeepsThePasteboard) {
  desktop.pasteboard.string = "kept";
  editor->setString("abc");
  editor->setSelectedRange({0, 0});
  EXPECT_TRUE(hands().perform("copy:"));
  EXPECT_EQ(desktop.pasteboard.string, "kept");
  editor->setSelectedRange({1, 2});
  hands().perform("copy:");
  EXPECT_EQ(desktop.pasteboard.string, "bc");
}

TEST_F(NSTextViewTest, PastingPutsTheTextInThePlaceOfTheSelection) {
  desktop.pasteboard.string = "new";
  editor->setString("old text");
  editor->setSelectedRange({0, 3});
  hands().perform("paste:");
  desktop.queue.drain();
  EXPECT_EQ(editor->string(), "new text");
}

}  // namespace
}  // namespace platform
