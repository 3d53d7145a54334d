#include "Components/MarkdownHtmlHelper.h"
#include "Markdown/MarkdownConversion.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

class MarkdownConversionTest : public testing::Test {
 protected:
  /// A text that starts a paragraph with `word`, long enough for a thread of its own.
  static std::string longText(const std::string& word) {
    return word + "\n\n" + std::string(MarkdownConversion::longestAtOnce, 'x');
  }

  void convert(const std::string& text) {
    conversion->convert(parser, text,
                        [this](const std::string& html) { shown.push_back(html.substr(0, html.find('x'))); });
  }

  /// Lets the main loop go on until so many are shown.
  void waitFor(std::size_t count) {
    while (shown.size() < count) {
      desktop.queue.drain();
      std::this_thread::yield();
    }
  }

  std::string beginning(const std::string& word) const {
    const auto html = parser->html(longText(word));
    return html.substr(0, html.find('x'));
  }

  platform::HeadlessPlatform desktop;
  MarkdownConversion::Parser parser =
      std::make_shared<const markdown::MarkdownParser>(MarkdownHtmlHelper::makeParser());
  std::unique_ptr<MarkdownConversion> conversion = std::make_unique<MarkdownConversion>();
  std::vector<std::string> shown;
};

TEST_F(MarkdownConversionTest, AShortTextIsShownAtOnce) {
  convert("*a*");
  EXPECT_EQ(shown, std::vector{parser->html("*a*")});
  convert(std::string(MarkdownConversion::longestAtOnce, 'x'));
  EXPECT_EQ(shown.size(), 2U);
}

TEST_F(MarkdownConversionTest, ALongTextIsShownInALaterTurn) {
  convert(longText("a"));
  EXPECT_TRUE(shown.empty());
  waitFor(1);
  EXPECT_EQ(shown.front(), beginning("a"));
}

TEST_F(MarkdownConversionTest, OfTheTextsThatComeMeanwhileTheNewestIsShown) {
  for (const char* word : {"a", "b", "c", "d"}) convert(longText(word));
  waitFor(2);
  EXPECT_EQ(shown, (std::vector{beginning("a"), beginning("d")}));
}

TEST_F(MarkdownConversionTest, AShortTextIsNotReplacedByALongOneBeforeIt) {
  convert(longText("a"));
  convert(longText("b"));
  convert("short");
  convert(longText("c"));
  waitFor(2);
  desktop.queue.drain();
  EXPECT_EQ(shown, (std::vector{parser->html("short"), beginning("c")}));
}

TEST_F(MarkdownConversionTest, NothingIsShownForAScratchpadThatIsGone) {
  convert(longText("a"));
  convert(longText("b"));
  conversion.reset();
  desktop.queue.drain();
  EXPECT_TRUE(shown.empty());
}

TEST_F(MarkdownConversionTest, ShowingMayLeadToANextText) {
  conversion->convert(parser, longText("a"), [this](const std::string&) {
    shown.emplace_back("first");
    convert(longText("b"));
  });
  waitFor(2);
  EXPECT_EQ(shown, (std::vector<std::string>{"first", beginning("b")}));
}

}  // namespace
}  // namespace velkin
