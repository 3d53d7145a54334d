#include "Platform/NSHostingController.h"
#include "WebView/FindableWebView.h"
#include "WebView/WebViewHelper.h"
#include "unit/AppFixture.h"

#include <map>
#include <utility>

namespace velkin {
namespace {

using platform::NSHostingController;
using enum WebViewSwitchType;

class FindableWebViewTest : public AppFixture {
 protected:
  FindableWebViewTest() {
    for (const auto type : {chatgpt, bard, bitbucket, gitlab, hemingway, jira}) {
      pages.emplace(type, helper.getWebUIView(type));
    }
    state->showToolbar.set(false);
    desktop.attachedScreens = {{{{0, 0}, {5120, 2880}}, {{0, 0}, {5120, 2850}}}};
  }

  /// The container with the page of `main` in the main place.
  FindableWebView container(WebViewSwitchType main = chatgpt) const {
    return containerAround(pages.at(main));
  }
  FindableWebView containerAround(const WebView& main) const {
    return {.scripting = ScriptingHelper::make(),
            .webView = main,
            .pages = ServicePages({pages.at(chatgpt), pages.at(bard), pages.at(bitbucket), pages.at(gitlab),
                                   pages.at(hemingway), pages.at(jira)}),
            .markdownView = platform::Text("Markdown"),
            .sharedState = state};
  }
  void setSize(double width, double height) {
    defaults.set(width, UserDefault::webViewWidth);
    defaults.set(height, UserDefault::webViewHeight);
  }
  std::vector<platform::Published<bool>*> allFlags() {
    return {&state->isBarding,      &state->isBitBucketing, &state->isChatting, &state->isGitLabing,
            &state->isHemingwaying, &state->isJiring,       &state->isMarking};
  }
  void openAll() {
    for (auto* flag : allFlags()) flag->set(true);
  }

  /// What stands there, in order: pages by their names, "|" for a divider, brackets around a row.
  std::string layout(const FindableWebView& view) {
    NSHostingController host(view);
    std::string text;
    for (const auto* root : platform::headlessTree(host).roots()) describe(*root, text);
    return text;
  }

  /// The frames of what has a fixed side.
  static std::vector<platform::Frame> sidebarFrames(const platform::HeadlessHostingView& tree) {
    std::vector<platform::Frame> frames;
    for (const auto* view : tree.all([](const auto& v) {
           const auto& f = v.element().modifiers.frame;
           return f.width || f.height;
         })) {
      frames.push_back(view->element().modifiers.frame);
    }
    return frames;
  }

  WebViewHelper helper;
  std::map<WebViewSwitchType, WebView> pages;
  std::shared_ptr<SharedState> state = std::make_shared<SharedState>();

 private:
  static void append(std::string& text, std::string_view word) {
    if (!text.empty() && !text.ends_with('[')) text += ' ';
    text += word;
  }

  std::string nameOf(const platform::NSView* view) const {
    for (const auto& [type, page] : pages) {
      if (page.webView.get() == view) return std::string(viewName(type));
    }
    return "main";
  }

  void describe(const platform::HeadlessView& view, std::string& text) const {
    const auto& content = view.element().content;
    if (view.hosted != nullptr) return append(text, nameOf(view.hosted));
    if (std::holds_alternative<platform::DividerContent>(content)) return append(text, "|");
    if (const auto* words = std::get_if<platform::TextContent>(&content)) {
      // Blanks only keep a place.
      const bool isSeen = words->text.find_first_not_of(" \n") != std::string::npos;
      return append(text, isSeen ? words->text : "");
    }
    if (std::holds_alternative<platform::TextFieldContent>(content)) return append(text, "field");
    if (std::holds_alternative<platform::ButtonContent>(content)) return append(text, "button");
    const auto* stack = std::get_if<platform::StackContent>(&content);
    const bool isRow = stack != nullptr && stack->axis == platform::Axis::horizontal;
    if (isRow) append(text, "[");
    for (const auto* child : view.children()) describe(*child, text);
    if (isRow) text += ']';
  }
};

constexpr const char* toolbar = "[button button button button button button]";

TEST_F(FindableWebViewTest, EachOfTheSevenFlagsMeansThatThereIsASidebar) {
  const auto view = container();
  EXPECT_FALSE(view.isSideBarViewing());
  for (auto* flag : allFlags()) {
    flag->set(true);
    EXPECT_TRUE(view.isSideBarViewing());
    flag->set(false);
  }
}

TEST_F(FindableWebViewTest, WithoutSidebarsThereIsTheMainViewAlone) {
  setSize(980, 980);
  EXPECT_EQ(layout(container()), "ChatGPT");
}

TEST_F(FindableWebViewTest, AWideWindowHasItsSidebarsBesideTheMainView) {
  state->isJiring.set(true);
  for (const double height : {480.0, 600.0, 980.0}) {
    setSize(980, height);
    EXPECT_EQ(layout(container()), "[| Jira ChatGPT]");
  }
}

TEST_F(FindableWebViewTest, ATallOneThatIsntWideHasThemBelow) {
  state->isJiring.set(true);
  for (const double width : {340.0, 600.0}) {
    setSize(width, 980);
    EXPECT_EQ(layout(container()), "ChatGPT | Jira");
  }
}

TEST_F(FindableWebViewTest, WideAndTallBeginAboveTheMediumSize) {
  const auto view = container();
  setSize(600, 600);
  EXPECT_FALSE(view.isWideEnoughToShowChat());
  EXPECT_FALSE(view.isTallEnoughToShowChat());
  setSize(600.5, 600.5);
  EXPECT_TRUE(view.isWideEnoughToShowChat());
  EXPECT_TRUE(view.isTallEnoughToShowChat());
}

TEST_F(FindableWebViewTest, BesideTheMainViewSidebarsAndDividersHaveTheirOrder) {
  setSize(3840, 600);
  openAll();
  EXPECT_EQ(layout(containerAround(helper.getWebUIView(chatgpt))),
            "[Bard | | Markdown ChatGPT | | Hemingway BitBucket | | GitLab | Jira main]");
}

TEST_F(FindableWebViewTest, BelowTheMainViewTheyHaveAnother) {
  setSize(600, 2160);
  openAll();
  EXPECT_EQ(layout(containerAround(helper.getWebUIView(chatgpt))),
            "main ChatGPT | Bard | | Hemingway BitBucket | | GitLab | Jira Markdown |");
}

TEST_F(FindableWebViewTest, ADividerShowsWithItsSidebar) {
  const std::vector<std::pair<platform::Published<bool>*, std::pair<const char*, const char*>>> expected = {
      {&state->isBarding, {"[Bard | main]", "main Bard |"}},
      {&state->isMarking, {"[| Markdown main]", "main Markdown |"}},
      {&state->isChatting, {"[ChatGPT | main]", "main ChatGPT |"}},
      {&state->isHemingwaying, {"[| Hemingway main]", "main | Hemingway"}},
      {&state->isBitBucketing, {"[BitBucket | main]", "main BitBucket |"}},
      {&state->isGitLabing, {"[| GitLab main]", "main | GitLab"}},
      {&state->isJiring, {"[| Jira main]", "main | Jira"}}};
  const auto view = containerAround(helper.getWebUIView(chatgpt));
  for (const auto& [flag, layouts] : expected) {
    flag->set(true);
    setSize(980, 600);
    EXPECT_EQ(layout(view), layouts.first);
    setSize(600, 980);
    EXPECT_EQ(layout(view), layouts.second);
    flag->set(false);
  }
}

TEST_F(FindableWebViewTest, ThePageInTheMainPlaceStandsNowhereElse) {
  openAll();
  setSize(3840, 600);
  EXPECT_EQ(layout(container()), "[Bard | | Markdown | Hemingway BitBucket | | GitLab | Jira ChatGPT]");
  EXPECT_EQ(layout(container(jira)), "[Bard | | Markdown ChatGPT | | Hemingway BitBucket | | GitLab Jira]");
  setSize(600, 2160);
  EXPECT_EQ(layout(container()), "ChatGPT Bard | | Hemingway BitBucket | | GitLab | Jira Markdown |");
  EXPECT_EQ(layout(container(bard)), "Bard ChatGPT | | Hemingway BitBucket | | GitLab | Jira Markdown |");
}

TEST_F(FindableWebViewTest, TheScratchpadInTheMainPlaceStandsNowhereElseAndLeavesEveryPageItsSidebar) {
  openAll();
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  setSize(3840, 600);
  EXPECT_EQ(layout(container()), "[Bard | ChatGPT | | Hemingway BitBucket | | GitLab | Jira Markdown]");
  setSize(600, 2160);
  EXPECT_EQ(layout(container()), "Markdown ChatGPT | Bard | | Hemingway BitBucket | | GitLab | Jira");
}

TEST_F(FindableWebViewTest, TheScratchpadStandsInTheMainPlaceWithChatAtItsLeft) {
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  state->isChatting.set(true);
  setSize(980, 600);
  EXPECT_EQ(layout(container()), "[ChatGPT | Markdown]");
  setSize(600, 600);
  EXPECT_EQ(layout(container()), "Markdown");
}

TEST_F(FindableWebViewTest, TheToolbarStandsAboveTheMainViewInEachArrangement) {
  state->showToolbar.set(true);
  const std::string bar = toolbar;
  setSize(600, 600);
  EXPECT_EQ(layout(container()), bar + " ChatGPT");
  state->isJiring.set(true);
  setSize(980, 600);
  EXPECT_EQ(layout(container()), "[| Jira " + bar + " ChatGPT]");
  setSize(600, 980);
  EXPECT_EQ(layout(container()), bar + " ChatGPT | Jira");
}

TEST_F(FindableWebViewTest, ASmallOneHidesThemAndTheyComeBackWhenItGrows) {
  setSize(600, 600);
  state->isJiring.set(true);
  NSHostingController host(container());
  auto& tree = platform::headlessTree(host);
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 1U);
  EXPECT_TRUE(state->isJiring.get());
  setSize(980, 600);
  state->isJiring.set(false);
  state->isJiring.set(true);
  desktop.queue.drain();
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 2U);
}

TEST_F(FindableWebViewTest, ASidebarsShareIsOfWhatTheScreenHas) {
  desktop.attachedScreens = {{{{0, 0}, {1600, 1200}}, {{0, 0}, {1600, 1100}}}};
  state->isJiring.set(true);
  setSize(3840, 2160);
  NSHostingController wide(container());
  EXPECT_DOUBLE_EQ(*sidebarFrames(platform::headlessTree(wide)).at(0).width, 240);
  setSize(600, 2160);
  NSHostingController tall(container());
  EXPECT_DOUBLE_EQ(*sidebarFrames(platform::headlessTree(tall)).at(0).height, 231);
}

TEST_F(FindableWebViewTest, ASidebarsWidthFollowsTheWindows) {
  const std::vector<std::pair<double, double>> widths = {{896, 448}, {980, 147}, {3840, 576}, {700, 448}};
  for (const auto& [window, side] : widths) {
    setSize(window, 600);
    state->isJiring.set(true);
    NSHostingController host(container());
    const auto frames = sidebarFrames(platform::headlessTree(host));
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_DOUBLE_EQ(*frames[0].width, side) << window;
    EXPECT_FALSE(frames[0].height.has_value());
  }
}

TEST_F(FindableWebViewTest, ASidebarsHeightFollowsTheWindows) {
  const std::vector<std::pair<double, double>> heights = {{896, 448}, {980, 980 * 0.21}, {2160, 2160 * 0.21}};
  for (const auto& [window, side] : heights) {
    setSize(600, window);
    state->isJiring.set(true);
    NSHostingController host(container());
    const auto frames = sidebarFrames(platform::headlessTree(host));
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_DOUBLE_EQ(*frames[0].height, side) << window;
    EXPECT_FALSE(frames[0].width.has_value());
  }
}

TEST_F(FindableWebViewTest, TheFindBarStandsAboveThePageAloneAndOnlyWhileItIsWanted) {
  state->isSearching.set(true);
  state->isJiring.set(true);
  setSize(980, 600);
  const std::string bar = "[field [button | button] button]";
  EXPECT_EQ(layout(container()), "[| Jira " + bar + " ChatGPT]");
  auto without = container();
  without.webView.reset();
  EXPECT_EQ(layout(without), "[| Jira]");
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  EXPECT_EQ(layout(container()), "[| Jira Markdown]");
}

TEST_F(FindableWebViewTest, WithoutAPageNothingIsSearchedAndDoneStillEndsTheSearch) {
  auto view = container();
  view.webView.reset();
  state->isSearching.set(true);
  view.searchFieldDidStartSearching();
  view.doneClicked();
  EXPECT_FALSE(state->isSearching.get());
  EXPECT_TRUE(engineOf(pages.at(chatgpt)).scripts.empty());
}

TEST_F(FindableWebViewTest, AnEmptiedTextEndsTheFindingAndWhatWasFound) {
  const auto view = container();
  view.text.set("word");
  view.isPrevNextButtonDisabled.set(false);
  view.isNotFoundTextHidden.set(false);
  view.textChanged("");
  EXPECT_FALSE(view.isFind.get());
  EXPECT_TRUE(view.isPrevNextButtonDisabled.get());
  EXPECT_TRUE(view.isNotFoundTextHidden.get());
  EXPECT_EQ(view.text.get(), "");
}

TEST_F(FindableWebViewTest, AnEmptyTextThatWasFoundIsForgottenByAnEmptyEdit) {
  const auto view = container();
  view.isPrevNextButtonDisabled.set(false);
  view.textChanged("");
  EXPECT_TRUE(view.isPrevNextButtonDisabled.get());
}

TEST_F(FindableWebViewTest, AnEditThatChangesNothingLeavesTheStepsOn) {
  const auto view = container();
  view.text.set("word");
  view.isPrevNextButtonDisabled.set(false);
  view.textChanged("word");
  EXPECT_FALSE(view.isPrevNextButtonDisabled.get());
  EXPECT_TRUE(view.isFind.get());
}

}  // namespace
}  // namespace velkin
