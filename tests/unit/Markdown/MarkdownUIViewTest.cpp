#include "Markdown/MarkdownUIView.h"

#include "Components/MarkdownHtmlHelper.h"
#include "Markdown/MarkdownFooterUIView.h"
#include "Markdown/SampleMarkdown.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSHostingController.h"
#include "unit/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::HeadlessTextView;
using platform::NSRange;
using platform::NSTextView;
using Host = platform::NSHostingController<MarkdownUIView>;

class MarkdownUIViewTest : public testing::Test {
 protected:
  MarkdownUIViewTest() {
    desktop.dataFolder = folder.path();
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~MarkdownUIViewTest() override { platform::setDebugLogSink({}); }

  /// A new scratchpad in the place of the one before.
  void open() {
    host.reset();
    host = std::make_unique<Host>(MarkdownUIView{.sharedState = state});
    host->view();
    desktop.queue.drain();
  }
  const MarkdownUIView& view() { return host->rootView; }
  platform::HeadlessHostingView& tree() { return platform::headlessTree(*host); }
  HeadlessTextView& editor() { return *desktop.textViews.back(); }
  platform::HeadlessWebView& preview() { return *desktop.webViews.back(); }
  void press(const std::string& name) {
    auto* control = tree().control(name);
    ASSERT_NE(control, nullptr) << name;
    control->press();
    desktop.queue.drain();
  }
  void write(const std::string& text) {
    editor().setString(text, NSTextView::UndoHistory::kept);
    desktop.queue.drain();
  }
  bool showsPreview() { return tree().all<platform::HostedContent>().size() == 2; }
  std::vector<std::string> tooltips() {
    std::vector<std::string> all;
    for (const auto* button : tree().all<platform::ButtonContent>()) {
      if (!button->element().modifiers.help.empty()) all.push_back(button->element().modifiers.help);
    }
    return all;
  }

  TemporaryFolder folder;
  platform::HeadlessPlatform desktop;
  std::shared_ptr<SharedState> state = std::make_shared<SharedState>();
  std::vector<std::string> log;
  std::unique_ptr<Host> host;
};

TEST_F(MarkdownUIViewTest, ItStartsWithTheSampleAndThePreviewOnTheRight) {
  open();
  EXPECT_EQ(view().fontSize.get(), platform::preferredPointSize(platform::Font::body));
  EXPECT_EQ(view().webZoom.get(), 0.75);
  EXPECT_FALSE(view().isFind.get());
  EXPECT_TRUE(view().isPrevNextButtonDisabled.get());
  EXPECT_TRUE(view().isNotFoundTextHidden.get());
  EXPECT_TRUE(view().isShowingPreviewVertically.get());
  EXPECT_FALSE(view().isShowingPreviewHorizontally.get());
  EXPECT_EQ(editor().string(), sampleMarkdown);
  EXPECT_FALSE(editor().canUndo()) << "there was nothing before the sample";
  EXPECT_EQ(view().markdown.get(), sampleMarkdown);
  const auto page =
      MarkdownHtmlHelper(false).makeHTMLString(MarkdownHtmlHelper::makeParser().html(std::string(sampleMarkdown)));
  EXPECT_EQ(preview().htmlLoads.back(), page);
  EXPECT_EQ(preview().pageZoom(), 0.75);
  EXPECT_TRUE(showsPreview());
}

TEST_F(MarkdownUIViewTest, TheSampleShowsTheDialectAndNoAddress) {
  const std::string sample(sampleMarkdown);
  EXPECT_TRUE(sample.starts_with("# Sample Markdown "));
  EXPECT_NE(sample.find("\n## Markdown syntax supported\n"), std::string::npos);
  EXPECT_EQ(sample.find("http"), std::string::npos);
  const auto html = MarkdownHtmlHelper::makeParser().html(sample);
  for (const auto* element : {"<h1>", "<h2>", "<em>", "<strong>", "<s>", "<a href=", "<code>", "<pre>", "<ul>",
                              "<ol>", "<table>", "<blockquote", "<hr>"})
    EXPECT_NE(html.find(element), std::string::npos) << element;
  const std::string plain(sampleUnformattedMarkdown);
  EXPECT_EQ(plain.find_first_of("#*`~|>"), std::string::npos);
}

TEST_F(MarkdownUIViewTest, EachChangeIsConvertedAtOnce) {
  open();
  editor().setSelectedRange({0, 100000});
  editor().type("*a*");
  EXPECT_EQ(view().markdown.get(), "*a*");
  EXPECT_EQ(view().html.get(), "<p><em>a</em></p>");
  desktop.queue.drain();
  EXPECT_EQ(preview().htmlLoads.back(), MarkdownHtmlHelper(false).makeHTMLString("<p><em>a</em></p>"));
}

TEST_F(MarkdownUIViewTest, WhileAPageLoadsOnlyTheNewestTextIsLoadedNext) {
  open();
  const auto count = preview().htmlLoads.size();
  preview().isUnderWay = true;
  for (const auto* text : {"1", "2", "3"}) write(text);
  EXPECT_EQ(preview().htmlLoads.size(), count);
  preview().isUnderWay = false;
  preview().navigationDelegate->didFinish(preview());
  EXPECT_EQ(preview().htmlLoads.size(), count + 1);
  EXPECT_EQ(preview().htmlLoads.back(), MarkdownHtmlHelper(false).makeHTMLString("<p>3</p>"));
  preview().isUnderWay = true;
  write("4");
  desktop.queue.advance(0.5);
  EXPECT_EQ(preview().htmlLoads.back(), MarkdownHtmlHelper(false).makeHTMLString("<p>4</p>"))
      << "a page that doesn't come to its end is waited for half a second";
}

TEST_F(MarkdownUIViewTest, AnEmptiedEditorStaysEmptyAndItsPageTo) {
  open();
  press("Delete");
  EXPECT_EQ(editor().string(), "");
  EXPECT_EQ(view().html.get(), "");
  EXPECT_EQ(preview().htmlLoads.back(), MarkdownHtmlHelper(false).makeHTMLString(""));
  editor().undo();
  EXPECT_EQ(editor().string(), sampleMarkdown) << "deleting is an edit";
}

TEST_F(MarkdownUIViewTest, ThePreviewStandsInOnePlaceOrInNone) {
  open();
  press("Preview Right");
  EXPECT_FALSE(showsPreview());
  press("Preview Bottom");
  EXPECT_TRUE(showsPreview());
  EXPECT_TRUE(view().isShowingPreviewHorizontally.get());
  press("Preview Right");
  EXPECT_TRUE(view().isShowingPreviewVertically.get());
  EXPECT_FALSE(view().isShowingPreviewHorizontally.get());
  press("Preview Right");
  EXPECT_FALSE(showsPreview());
}

TEST_F(MarkdownUIViewTest, LettersAndZoomHaveNoLimits) {
  open();
  press("Larger");
  EXPECT_EQ(view().fontSize.get(), 14);
  EXPECT_NEAR(view().webZoom.get(), 0.85, 1e-9);
  EXPECT_EQ(editor().font, (platform::SystemFont{.size = 14, .weight = platform::FontWeight::light}));
  const auto loads = preview().htmlLoads.size();
  press("Smaller");
  EXPECT_EQ(preview().htmlLoads.size(), loads + 1);
  for (int i = 0; i < 20; ++i) press("Smaller");
  EXPECT_EQ(view().fontSize.get(), -7);
  EXPECT_GE(editor().font.size, 1);
  EXPECT_GT(preview().pageZoom(), 0);
  EXPECT_EQ(editor().textColor, platform::Color(platform::Color::Role::primary, 0.7));
}

TEST_F(MarkdownUIViewTest, TheToolBarsHaveTheirButtonsInOrder) {
  open();
  EXPECT_EQ(tooltips(),
            (std::vector<std::string>{"Smaller", "Larger", "Bold", "Italics", "Strikethrough", "Preview Bottom",
                                      "Preview Right", "Delete", "Header", "Table", "Block Quote",
                                      "Inline Code", "Code Block", "Divider", "Link", "Image", "Copy",
                                      "Earlier Texts"}));
}

TEST_F(MarkdownUIViewTest, EachButtonInsertsItsMarkdown) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"Bold", "****"},         {"Italics", "**"},         {"Strikethrough", "~~~~"}, {"Block Quote", "\n > "},
      {"Inline Code", "``"},    {"Code Block", "```\n\n```"}, {"Divider", "\n---\n"}, {"Link", "[]()"},
      {"Image", "![]()"}};
  open();
  for (const auto& [button, markdown] : rows) {
    editor().setString("", NSTextView::UndoHistory::kept);
    press(button);
    EXPECT_EQ(editor().string(), markdown) << button;
  }
}

TEST_F(MarkdownUIViewTest, AHeaderComesWhenItsBubbleHasClosed) {
  open();
  write("");
  press("Header");
  editor().isFirstResponder = false;
  for (int level = 1; level <= 6; ++level) {
    EXPECT_TRUE(tree().showsText("Heading " + std::to_string(level)));
  }
  press("Heading 3");
  EXPECT_FALSE(tree().showsText("Heading 3"));
  EXPECT_EQ(editor().string(), "");
  desktop.queue.advance(0.2);
  EXPECT_EQ(editor().string(), "### ");
  EXPECT_TRUE(editor().isFirstResponder);
}

TEST_F(MarkdownUIViewTest, ATableIsMadeAsItsBubbleSays) {
  open();
  write("");
  press("Table");
  EXPECT_TRUE(tree().showsText("Create a 1x1 table with a header."));
  const auto pickers = tree().all<platform::PickerContent>();
  ASSERT_EQ(pickers.size(), 2U);
  EXPECT_EQ(std::get<platform::PickerContent>(pickers[0]->element().content).title, "Rows      ");
  EXPECT_EQ(std::get<platform::PickerContent>(pickers[1]->element().content).title, "Columns");
  EXPECT_EQ(std::get<platform::PickerContent>(pickers[0]->element().content).options.size(), 12U);
  pickers[1]->select(1);
  desktop.queue.drain();
  tree().all<platform::CheckBoxContent>().front()->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree().showsText("Create a 2x1 table without a header."));
  press("Done");
  EXPECT_EQ(editor().string(), "");
  desktop.queue.advance(0.2);
  EXPECT_EQ(editor().string(), "| Row1 | Cell1 |\n");
}

TEST_F(MarkdownUIViewTest, CopyTakesAllOfTheText) {
  open();
  write("*all*");
  press("Copy");
  EXPECT_EQ(desktop.pasteboard.string, "*all*");
  write("");
  press("Copy");
  EXPECT_EQ(desktop.pasteboard.string, "");
}

TEST_F(MarkdownUIViewTest, TheNextScratchpadOffersWhatWasWrittenInTheOneBefore) {
  open();
  EXPECT_EQ(tree().control("Bring back your last text"), nullptr);
  write("mine");
  EXPECT_EQ(tree().control("Bring back your last text"), nullptr);
  open();
  EXPECT_EQ(editor().string(), sampleMarkdown);
  editor().type("!");
  press("Bring back your last text");
  EXPECT_EQ(editor().string(), "mine") << "the one before, whatever was typed here meanwhile";
  EXPECT_TRUE(editor().isFirstResponder);
  EXPECT_EQ(tree().control("Bring back your last text"), nullptr);
  editor().undo();
  EXPECT_NE(editor().string(), "mine");
  open();
  press("Dismiss");
  EXPECT_EQ(tree().control("Bring back your last text"), nullptr);
}

TEST_F(MarkdownUIViewTest, NeitherTheSampleNorAnEmptyTextIsKept) {
  open();
  write("");
  write(std::string(sampleMarkdown));
  open();
  EXPECT_EQ(tree().control("Bring back your last text"), nullptr);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "scratchpad"));
}

TEST_F(MarkdownUIViewTest, WhatWasDeletedStaysAmongTheEarlierTexts) {
  open();
  write("first");
  press("Delete");
  desktop.queue.advance(1);
  write("second");
  press("Earlier Texts");
  auto* first = tree().all([](const platform::HeadlessView& row) {
    return row.kind() == "button" && row.text().ends_with("first");
  }).front();
  first->press();
  desktop.queue.drain();
  EXPECT_EQ(editor().string(), "first");
  editor().undo();
  EXPECT_EQ(editor().string(), "second");
}

TEST_F(MarkdownUIViewTest, ADiskThatTakesNothingIsToldOfOnce) {
  writeFile(folder.path() / "scratchpad", "a file in its place");
  open();
  write("a secret");
  EXPECT_TRUE(tree().showsText("This text can't be kept on disk, and is lost when the scratchpad closes."));
  press("Dismiss");
  write("a secret text");
  EXPECT_FALSE(tree().showsText("This text can't be kept on disk, and is lost when the scratchpad closes."));
  ASSERT_EQ(log.size(), 1U);
  EXPECT_EQ(log.front().find("secret"), std::string::npos);
}

TEST_F(MarkdownUIViewTest, WhatTheEditorRefusesIsSaid) {
  open();
  write("a");
  EXPECT_FALSE(editor().setString(std::string(NSTextView::maximumBytes + 1, 'x'), NSTextView::UndoHistory::kept));
  desktop.queue.drain();
  EXPECT_TRUE(tree().showsText("Too long: the scratchpad holds 16 MB. Nothing was changed."));
  EXPECT_EQ(editor().string(), "a");
}

TEST_F(MarkdownUIViewTest, ThePreviewReachesNothingButPictures) {
  open();
  const auto& configuration = preview().configuration();
  EXPECT_TRUE(configuration.isIsolated);
  EXPECT_TRUE(configuration.isolatedPictures);
  EXPECT_FALSE(configuration.usesPersistentDataStore);
  EXPECT_EQ(configuration.isolatedScripts, MarkdownHtmlHelper::pageScripts());
}

TEST_F(MarkdownUIViewTest, NothingOfAScratchpadIsLeftWhenItGoes) {
  auto pad = std::make_shared<MarkdownScratchpad>();
  const std::weak_ptr<MarkdownScratchpad> weak = pad;
  host = std::make_unique<Host>(MarkdownUIView{.sharedState = state, .pad = pad});
  host->view();
  desktop.queue.drain();
  pad.reset();
  host.reset();
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace velkin
