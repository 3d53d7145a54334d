#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "SearchBar/SearchBarView.h"
#include "SearchBar/SearchResultTextUIView.h"
#include "Values/SearchBarSearches.h"
#include "Values/ServiceAddresses.h"
#include "Values/WebViewSwitchType.h"

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace velkin {
namespace {

using platform::HeadlessURLSession;
using platform::HeadlessView;

class SearchBarViewTest : public testing::Test {
 protected:
  using Controller = platform::NSHostingController<SearchBarView>;

  SearchBarViewTest() {
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
    UserDefaultsHelper().set("stored key", UserDefault::searchKey);
  }
  ~SearchBarViewTest() override { platform::setDebugLogSink({}); }

  void open(SearchBarView content = {}) {
    controller = std::make_shared<Controller>(std::move(content));
    controller->view();
    settle();
  }
  void settle() {
    desktop.urlSession.waitUntilDelivered();
    desktop.queue.drain();
  }
  const SearchBarView& view() { return controller->rootView; }
  platform::HeadlessHostingView& tree() { return platform::headlessTree(*controller); }
  HeadlessView& field() {
    const auto fields = tree().all<platform::TextFieldContent>();
    return *fields.at(0);
  }
  void type(const std::string& text) {
    field().type(text);
    settle();
  }
  void commit() {
    field().commit();
    settle();
  }
  /// A tap on the place of the field.
  void tapField() {
    const auto tappable = tree().all([](const HeadlessView& v) {
      return v.element().modifiers.onTap != nullptr &&
             std::any_of(v.children().begin(), v.children().end(), [](const auto* child) {
               return std::holds_alternative<platform::TextFieldContent>(child->element().content);
             });
    });
    tappable.at(0)->press();
    settle();
  }
  void press(std::string_view name) {
    auto* control = tree().control(name);
    ASSERT_NE(control, nullptr) << name;
    control->press();
    settle();
  }
  bool shows(std::string_view name) { return tree().control(name) != nullptr; }
  void answer(HeadlessURLSession::Answer answer) {
    desktop.urlSession.addAnswer(std::string(serviceAddresses.chatCompletions), std::move(answer));
  }
  void answerWith(const std::string& content) {
    answer({.data = nlohmann::json{{"choices", {{{"message", {{"content", content}}}}}}}.dump()});
  }
  void ask(const std::string& prompt) {
    tapField();
    type(prompt);
    commit();
  }
  std::size_t requestCount() { return desktop.urlSession.requests().size(); }
  std::string sentPrompt() {
    const auto body = nlohmann::json::parse(desktop.urlSession.requests().back().httpBody);
    return body["messages"][0]["content"];
  }
  static std::vector<std::string> storedPrompts() {
    std::vector<std::string> prompts;
    for (const auto& search : UserDefaultsHelper().getSearchBarSearches())
      prompts.push_back(search.searchPrompt);
    return prompts;
  }
  std::string shownPage() {
    const auto hosted = tree().all<platform::HostedContent>();
    if (hosted.empty()) return {};
    const auto& loads = dynamic_cast<platform::HeadlessWebView&>(*hosted.front()->hosted).htmlLoads;
    return loads.empty() ? "" : loads.back();
  }

  platform::HeadlessPlatform desktop;
  std::vector<std::string> log;
  std::shared_ptr<Controller> controller;
};

TEST_F(SearchBarViewTest, itStartsEmptyWithTheFieldReady) {
  open();
  EXPECT_NE(tree().field("Type Your Prompt"), nullptr);
  EXPECT_TRUE(field().isEnabled());
  EXPECT_TRUE(field().element().modifiers.focused->get());
  EXPECT_TRUE(tree().all<platform::HostedContent>().empty());
  EXPECT_FALSE(shows("Copy"));
  EXPECT_FALSE(shows("Reset Key"));
  EXPECT_TRUE(tree().all<platform::ProgressContent>().empty());
}

TEST_F(SearchBarViewTest, aFieldThatIsOffIsHadBackByAKeyAndReturnOnItIsItsCommit) {
  open();
  answerWith("first");
  ask("one");
  EXPECT_FALSE(field().isEnabled());
  field().wake();
  settle();
  EXPECT_TRUE(field().isEnabled());
  EXPECT_TRUE(field().element().modifiers.focused->get());
  commit();
  EXPECT_EQ(requestCount(), 1U) << "the same prompt";
  type("two");
  answerWith("second");
  commit();
  EXPECT_FALSE(field().isEnabled());
  commit();
  EXPECT_TRUE(field().isEnabled()) << "Return on the field that is off gives it back";
  EXPECT_EQ(requestCount(), 2U);
}

TEST_F(SearchBarViewTest, whatComesBelowThePromptIsTold) {
  open();
  const auto news = [&] {
    for (auto* view : tree().all([](const HeadlessView& v) {
           return v.element().modifiers.role == platform::AccessibilityRole::status;
         })) {
      return view->element().modifiers.label;
    }
    return std::string("none");
  };
  EXPECT_EQ(news(), "");
  answerWith("first");
  answer({.statusCode = 500, .data = "no"});
  ask("one");
  EXPECT_EQ(news(), "The answer is there");
  tapField();
  type("two");
  commit();
  EXPECT_EQ(news(), "The question could not be answered");
}

TEST_F(SearchBarViewTest, anEntryThatAnotherPanelAddedMeanwhileStays) {
  open();
  answerWith("first");
  tapField();
  type("one");
  // Behind this panel's look at what is stored.
  std::vector<SearchBarSearch> others;
  ASSERT_TRUE(addSearch(others, "elsewhere", "<p>there</p>"));
  UserDefaultsHelper().setSearchBarSearches(others);
  commit();
  EXPECT_EQ(storedPrompts(), (std::vector<std::string>{"elsewhere", "one"}));
}

TEST_F(SearchBarViewTest, whatIsRecalledWhileARequestRunsLeavesThePromptAsItWasSent) {
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = "old"}});
  open();
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::held);
  answerWith("late");
  ask("sent");
  view().recentSearchClicked(view().searches.get().front());
  desktop.queue.advance(0.5);
  EXPECT_EQ(view().text.get(), "old");
  UserDefaultsHelper().setSearchBarSearches({});
  desktop.urlSession.deliver();
  settle();
  EXPECT_EQ(storedPrompts(), std::vector<std::string>{"sent"}) << "to what is stored at that moment";
}

TEST_F(SearchBarViewTest, theSampleAnswerHasItsLength) {
  EXPECT_EQ(SearchBarView::chatText.size(), 578U);
  EXPECT_TRUE(SearchBarView::chatText.starts_with("I am ChatGPT, a large language model created by OpenAI."));
}

TEST_F(SearchBarViewTest, measuresAreTheOnesOfTheBar) {
  open();
  EXPECT_EQ(view().width, 720);
  EXPECT_EQ(view().searchBarHeight, 64);
  EXPECT_EQ(rawValue(view().iconSize), 32);
}

TEST_F(SearchBarViewTest, returnOnAnEmptyFieldSendsNothing) {
  open();
  commit();
  EXPECT_EQ(requestCount(), 0U);
  EXPECT_TRUE(field().isEnabled());
}

TEST_F(SearchBarViewTest, aPromptIsSentAsTypedWithTheStoredKey) {
  open();
  answerWith("**yes**");
  type(" Is it \"so\"? ");
  commit();
  ASSERT_EQ(requestCount(), 1U);
  EXPECT_EQ(sentPrompt(), " Is it \"so\"? ");
  EXPECT_EQ(desktop.urlSession.requests().back().allHTTPHeaderFields.at("Authorization"),
            "Bearer stored key");
}

TEST_F(SearchBarViewTest, whileARequestRunsTheSpinnerStandsInPlaceOfAllTheRest) {
  open();
  answerWith("first");
  answerWith("second");
  ask("one");
  EXPECT_TRUE(shows("Copy"));
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::held);
  ask("two");
  EXPECT_EQ(tree().all<platform::ProgressContent>().size(), 1U);
  EXPECT_FALSE(shows("Copy"));
  EXPECT_TRUE(tree().all<platform::HostedContent>().empty());
  EXPECT_FALSE(field().isEnabled());
  desktop.urlSession.deliver();
  settle();
  EXPECT_TRUE(tree().all<platform::ProgressContent>().empty());
  EXPECT_TRUE(shows("Copy"));
}

TEST_F(SearchBarViewTest, theAnswerIsShownAsHtmlBelowItsButtons) {
  open();
  answerWith("# Title\n\n| a | b |\n| --- | --- |\n| 1 | 2 |\n");
  ask("table?");
  EXPECT_NE(view().resultHtml.get().find("<table>"), std::string::npos);
  EXPECT_NE(shownPage().find(view().resultHtml.get()), std::string::npos);
  EXPECT_NE(shownPage().find("<!DOCTYPE html>"), std::string::npos);
  EXPECT_EQ(view().searchedText.get(), "table?");
  const auto order = tree().all([](const HeadlessView& v) {
    return std::holds_alternative<platform::HostedContent>(v.element().content) ||
           (std::holds_alternative<platform::ButtonContent>(v.element().content) && v.text() == "Copy");
  });
  ASSERT_EQ(order.size(), 2U);
  EXPECT_EQ(order.front()->text(), "Copy");
}

TEST_F(SearchBarViewTest, theFieldStaysOffAfterAnAnswerUntilItIsTapped) {
  open();
  answerWith("x");
  ask("one");
  EXPECT_FALSE(field().isEnabled());
  tapField();
  EXPECT_TRUE(field().isEnabled());
  EXPECT_TRUE(field().element().modifiers.focused->get()) << "who taps it wants to write";
  tapField();
  EXPECT_TRUE(field().isEnabled()) << "a tap on a field that takes input changes nothing";
}

TEST_F(SearchBarViewTest, aTapOnTheAnswerSwitchesTheFieldOff) {
  open();
  answerWith("x");
  ask("one");
  tapField();
  const auto results = tree().all([](const HeadlessView& v) {
    return v.element().modifiers.onTap != nullptr && !v.children().empty() && v.text().empty();
  });
  results.back()->press();
  settle();
  EXPECT_FALSE(field().isEnabled());
}

TEST_F(SearchBarViewTest, returnOnThePromptWhoseAnswerIsOnViewSendsNothing) {
  open();
  answerWith("x");
  ask("one");
  tapField();
  commit();
  EXPECT_EQ(requestCount(), 1U);
  EXPECT_TRUE(field().isEnabled());
}

TEST_F(SearchBarViewTest, aFieldThatIsOffLetsAReturnOnlySwitchItOn) {
  open();
  type("one");
  view().isTextFieldDisabled.set(true);
  view().completeChatQuery();
  settle();
  EXPECT_EQ(requestCount(), 0U);
  EXPECT_TRUE(field().isEnabled());
}

TEST_F(SearchBarViewTest, aFailureIsShownInItsWordsAndMayBeTriedAgain) {
  open();
  answer({.statusCode = 401, .data = "{}"});
  answerWith("at last");
  ask("one");
  EXPECT_EQ(view().resultHtml.get(),
            "Could not complete request.:-( \nError:Error Domain=HTTP Status Code: 401 Code=-1 \"(null)\"");
  EXPECT_NE(shownPage().find("HTTP Status Code: 401"), std::string::npos);
  EXPECT_EQ(view().searchedText.get(), "");
  EXPECT_TRUE(storedPrompts().empty());
  EXPECT_FALSE(field().isEnabled());
  tapField();
  commit();
  EXPECT_EQ(requestCount(), 2U);
  EXPECT_EQ(view().searchedText.get(), "one");
}

TEST_F(SearchBarViewTest, aDeadServiceIsTold) {
  open();
  ask("one");
  EXPECT_EQ(view().resultHtml.get(),
            "Could not complete request.:-( \nError:Error Domain=NSURLErrorDomain Code=-1004 \"Could not "
            "connect to the server.\"");
}

TEST_F(SearchBarViewTest, theRecentsAreOffUntilThereIsOneAndOnInTheSamePanel) {
  open();
  EXPECT_FALSE(tree().control("Recent Searches")->isEnabled());
  answerWith("x");
  ask("one");
  EXPECT_TRUE(tree().control("Recent Searches")->isEnabled());
  EXPECT_EQ(storedPrompts(), std::vector<std::string>{"one"});
  EXPECT_EQ(UserDefaultsHelper().getSearchBarSearches().front().resultMarkdown, view().resultHtml.get());
}

TEST_F(SearchBarViewTest, theMenuListsPromptsOldestFirst) {
  UserDefaultsHelper().setSearchBarSearches(
      {{.date = 1, .searchPrompt = "old"}, {.date = 2, .searchPrompt = "new"}});
  open();
  press("Recent Searches");
  std::vector<std::string> titles;
  for (const auto* button : tree().all<platform::ButtonContent>()) {
    if (!button->text().empty()) titles.push_back(button->text());
  }
  EXPECT_EQ(titles, (std::vector<std::string>{"old", "new", "Clear Recents"}));
  EXPECT_TRUE(tree().showsText("Hover over buttons for details."));
}

TEST_F(SearchBarViewTest, aRecalledSearchComesBackAfterABlankMoment) {
  UserDefaultsHelper().setSearchBarSearches(
      {{.date = 1, .searchPrompt = "old", .resultMarkdown = "<p>was</p>"},
       {.date = 2, .searchPrompt = "new"}});
  open();
  const auto stored = UserDefaultsHelper().getSearchBarSearches();
  press("Recent Searches");
  press("old");
  EXPECT_EQ(view().text.get(), "");
  EXPECT_EQ(view().resultHtml.get(), "");
  EXPECT_FALSE(field().isEnabled());
  EXPECT_FALSE(shows("Clear Recents")) << "the menu is closed";
  EXPECT_FALSE(desktop.webViews.empty()) << "the page's engine starts meanwhile";
  desktop.queue.advance(0.49);
  EXPECT_EQ(view().text.get(), "");
  desktop.queue.advance(0.01);
  settle();
  EXPECT_EQ(view().text.get(), "old");
  EXPECT_EQ(view().searchedText.get(), "old");
  EXPECT_NE(shownPage().find("<p>was</p>"), std::string::npos);
  EXPECT_TRUE(field().isEnabled());
  commit();
  EXPECT_EQ(requestCount(), 0U) << "its answer is on view";
  EXPECT_EQ(UserDefaultsHelper().getSearchBarSearches(), stored) << "a recall changes neither list nor dates";
}

TEST_F(SearchBarViewTest, aRecalledSearchWithoutAnAnswerShowsNothing) {
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = "old"}});
  open();
  view().recentSearchClicked(view().searches.get().front());
  desktop.queue.advance(0.5);
  settle();
  EXPECT_EQ(view().resultHtml.get(), "");
  EXPECT_TRUE(tree().all<platform::HostedContent>().empty());
}

TEST_F(SearchBarViewTest, aRecallThatOutlivesItsPanelTouchesNothing) {
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = "old"}});
  open();
  view().recentSearchClicked(view().searches.get().front());
  controller.reset();
  desktop.queue.advance(1);
  EXPECT_EQ(storedPrompts(), std::vector<std::string>{"old"});
}

TEST_F(SearchBarViewTest, clearingEmptiesTheStoreAndSwitchesTheButtonOff) {
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = "old"}});
  open();
  press("Recent Searches");
  press("Clear Recents");
  EXPECT_TRUE(storedPrompts().empty());
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchBarSearches),
            encode(SearchBarSearches{}).value());
  EXPECT_FALSE(tree().control("Recent Searches")->isEnabled());
}

TEST_F(SearchBarViewTest, theEighthPromptPushesOutTheFirst) {
  open();
  answerWith("x");
  for (int i = 1; i <= 8; ++i) ask("prompt " + std::to_string(i));
  const auto prompts = storedPrompts();
  ASSERT_EQ(prompts.size(), 7U);
  EXPECT_EQ(prompts.front(), "prompt 2");
  EXPECT_EQ(prompts.back(), "prompt 8");
}

TEST_F(SearchBarViewTest, aRepeatedPromptShowsTheNewAnswerAndLeavesTheHistoryAlone) {
  open();
  answerWith("first");
  answerWith("other");
  answerWith("second");
  ask("same");
  ask("else");
  const auto stored = UserDefaultsHelper().getString(UserDefault::searchBarSearches);
  ask("same");
  EXPECT_NE(view().resultHtml.get().find("second"), std::string::npos);
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchBarSearches), stored);
}

TEST_F(SearchBarViewTest, aHistoryThatIsNoJsonReadsAsNoneAndIsReplacedByTheNextAnswer) {
  UserDefaultsHelper().set("{broken", UserDefault::searchBarSearches);
  open();
  EXPECT_FALSE(tree().control("Recent Searches")->isEnabled());
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchBarSearches), "{broken");
  answerWith("x");
  ask("one");
  EXPECT_EQ(storedPrompts(), std::vector<std::string>{"one"});
}

TEST_F(SearchBarViewTest, aHistoryOfThousandsOpensAndScrolls) {
  std::vector<SearchBarSearch> many;
  for (int i = 0; i < 5000; ++i) many.push_back({.date = 1, .searchPrompt = "prompt " + std::to_string(i)});
  UserDefaultsHelper().setSearchBarSearches(many);
  open();
  press("Recent Searches");
  EXPECT_EQ(tree().all<platform::ScrollContent>().size(), 1U);
  press("prompt 4999");
  desktop.queue.advance(0.5);
  EXPECT_EQ(view().text.get(), "prompt 4999");
}

TEST_F(SearchBarViewTest, longAndManyLinedPromptsStandInOneLineWithATooltip) {
  const std::string prompt = "first\nsecond " + std::string(5000, 'x') + "é";
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = prompt}});
  open();
  press("Recent Searches");
  const auto rows = tree().all([](const HeadlessView& v) {
    return std::holds_alternative<platform::ButtonContent>(v.element().content) &&
           v.element().modifiers.help.starts_with("first\nsecond");
  });
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows.front()->text().find('\n'), std::string::npos);
  EXPECT_LT(rows.front()->element().modifiers.help.size(), 700U);
  rows.front()->press();
  desktop.queue.advance(0.5);
  EXPECT_EQ(view().text.get(), prompt) << "cut in the menu only";
}

TEST_F(SearchBarViewTest, theAnswerOfAClosedPanelIsStillKept) {
  open();
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::held);
  answerWith("late");
  ask("one");
  controller.reset();
  desktop.queue.drain();
  desktop.urlSession.deliver();
  desktop.queue.drain();
  EXPECT_EQ(storedPrompts(), std::vector<std::string>{"one"});
}

TEST_F(SearchBarViewTest, theAnswerOfAClosedPanelDoesNotUndoWhatANewerOneHasKept) {
  open();
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::held);
  answerWith("late");
  ask("slow");
  UserDefaultsHelper().setSearchBarSearches({{.date = 1, .searchPrompt = "quick"}});
  desktop.urlSession.deliver();
  settle();
  EXPECT_EQ(storedPrompts(), (std::vector<std::string>{"quick", "slow"}));
}

TEST_F(SearchBarViewTest, aCompletionOnAnotherThreadReachesTheView) {
  open();
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::background);
  answerWith("> quoted");
  ask("one");
  EXPECT_NE(shownPage().find("quoted"), std::string::npos);
  EXPECT_TRUE(shows("Copy"));
}

TEST_F(SearchBarViewTest, copyTakesThePromptAsAHeadingAndTheAnswerAsHtml) {
  open();
  answerWith("**yes**");
  ask("Is it?");
  desktop.pasteboard.string = "before";
  press("Copy");
  EXPECT_EQ(desktop.pasteboard.string, "## Is it?\n\n" + view().resultHtml.get());
}

TEST_F(SearchBarViewTest, withoutAKeyTheViewTellsHowToGetOne) {
  UserDefaultsHelper().set("", UserDefault::searchKey);
  open();
  EXPECT_NE(tree().field("Api Key Missing"), nullptr);
  EXPECT_TRUE(tree().showsText("\n1. Click \"Get Key\".\n2. Paste key above.\n3. Click \"Save Key\"."));
  EXPECT_TRUE(tree().control("Get Key")->isEnabled());
  EXPECT_FALSE(tree().control("Save Key")->isEnabled());
  EXPECT_FALSE(shows("Copy"));
}

TEST_F(SearchBarViewTest, theChatServicesAddressInTheKeysPlaceIsNoKey) {
  UserDefaultsHelper().set(std::string(defaultUrlString(WebViewSwitchType::search)), UserDefault::searchKey);
  open();
  EXPECT_TRUE(view().isMissingApiKey.get());
}

TEST_F(SearchBarViewTest, getKeyOpensTheProvidersPageInTheBrowser) {
  UserDefaultsHelper().set("", UserDefault::searchKey);
  open();
  press("Get Key");
  ASSERT_EQ(desktop.workspace.opened.size(), 1U);
  EXPECT_EQ(desktop.workspace.opened.front().absoluteString(), serviceAddresses.keyPage);
  EXPECT_EQ(desktop.workspace.opened.front().path(), "/account/api-keys");
}

TEST_F(SearchBarViewTest, saveKeyStoresTheTextAsItIs) {
  UserDefaultsHelper().set("", UserDefault::searchKey);
  open();
  type(" sk-\"ключ\" ");
  EXPECT_TRUE(tree().control("Save Key")->isEnabled());
  press("Save Key");
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchKey), " sk-\"ключ\" ");
  EXPECT_EQ(view().text.get(), "") << "the key leaves the field";
  EXPECT_NE(tree().field("Type Your Prompt"), nullptr);
  EXPECT_NE(std::find(log.begin(), log.end(), "Q$: didSetApiKey isApiKeySet true"), log.end());
}

TEST_F(SearchBarViewTest, returnInKeyModeSavesTheKeyInsteadOfSendingIt) {
  UserDefaultsHelper().set("", UserDefault::searchKey);
  open();
  commit();
  EXPECT_TRUE(view().isMissingApiKey.get()) << "there is nothing to save";
  type("sk-1");
  commit();
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchKey), "sk-1");
  EXPECT_FALSE(view().isMissingApiKey.get());
  EXPECT_EQ(requestCount(), 0U);
}

TEST_F(SearchBarViewTest, sevenTapsOnTheIconShowResetKeyAndSevenMoreHideIt) {
  open();
  answerWith("x");
  ask("one");
  for (int tap = 1; tap <= 14; ++tap) {
    press("Velkin");
    EXPECT_EQ(shows("Reset Key"), tap >= 7 && tap < 14) << tap;
  }
}

TEST_F(SearchBarViewTest, resetKeyForgetsTheKeyForGood) {
  open();
  answerWith("x");
  ask("one");
  for (int tap = 0; tap < 7; ++tap) press("Velkin");
  press("Reset Key");
  EXPECT_EQ(UserDefaultsHelper().getString(UserDefault::searchKey, "absent"), "");
  EXPECT_NE(tree().field("Api Key Missing"), nullptr);
  EXPECT_EQ(view().resultHtml.get(), "");
  EXPECT_NE(std::find(log.begin(), log.end(), "Q$: didSetApiKey isApiKeySet false"), log.end());
  open();
  EXPECT_TRUE(view().isMissingApiKey.get());
}

TEST_F(SearchBarViewTest, theResultIsSevenRowsHighInKeyModeAndTwentyFourElse) {
  const auto heightWith = [](bool isMissing, bool isSmall) {
    return SearchResultTextUIView{.useSmallerHeight = platform::Binding<bool>::constant(isSmall),
                                  .isMissingApiKey = platform::Binding<bool>::constant(isMissing),
                                  .resultHtml = platform::Binding<std::string>::constant("")}
        .getHeight();
  };
  const double size = platform::preferredPointSize(platform::Font::title3);
  EXPECT_EQ(heightWith(true, false), size * 7);
  EXPECT_EQ(heightWith(false, true), size * 7);
  EXPECT_EQ(heightWith(false, false), size * 24);
}

TEST_F(SearchBarViewTest, theAnswersPageIsShutOffFromEverything) {
  open();
  answerWith("<script>alert(1)</script>");
  ask("one");
  ASSERT_FALSE(desktop.webViews.empty());
  const auto& configuration = desktop.webViews.back()->configuration();
  EXPECT_TRUE(configuration.isIsolated);
  EXPECT_FALSE(configuration.usesPersistentDataStore);
  EXPECT_TRUE(configuration.userContentController.messageHandlers.empty());
}

TEST_F(SearchBarViewTest, panelsShareAViewThatIsEmptyBetweenThem) {
  const auto kept = std::make_shared<KeptAnswerView>();
  const std::vector<std::string> texts = {"first", "second", "third"};
  for (const auto& text : texts) answerWith(text);
  for (const auto& text : texts) {
    open(SearchBarView{.page = std::make_shared<AnswerPage>(kept)});
    ask(text);
    const auto& loads = desktop.webViews.back()->htmlLoads;
    EXPECT_NE(loads.back().find(text), std::string::npos);
    controller.reset();
    settle();
    EXPECT_EQ(loads.back(), "") << "nothing of an answer outlives its panel";
    EXPECT_EQ(desktop.webViews.back()->pageZoom(), 1);
  }
  EXPECT_EQ(desktop.webViews.size(), 1U);
}

TEST_F(SearchBarViewTest, theViewOfAVeryLongAnswerGoesWithItsPanel) {
  const auto kept = std::make_shared<KeptAnswerView>();
  open(SearchBarView{.page = std::make_shared<AnswerPage>(kept)});
  answerWith(std::string(2'000'000, 'x'));
  ask("long");
  EXPECT_NE(kept->webView, nullptr);
  controller.reset();
  settle();
  EXPECT_EQ(kept->webView, nullptr);
}

TEST_F(SearchBarViewTest, aPanelThatGoesLateLeavesTheNextOnesAnswerAlone) {
  const auto kept = std::make_shared<KeptAnswerView>();
  auto earlier = std::make_shared<AnswerPage>(kept);
  earlier->controller();
  open(SearchBarView{.page = std::make_shared<AnswerPage>(kept)});
  answerWith("later");
  ask("later");
  earlier.reset();
  EXPECT_NE(desktop.webViews.back()->htmlLoads.back().find("later"), std::string::npos);
}

TEST_F(SearchBarViewTest, typingBelowAnAnswerLoadsNothingAgain) {
  open();
  answerWith("x");
  ask("one");
  const auto loads = desktop.webViews.back()->htmlLoads.size();
  tapField();
  type("two");
  type("three");
  EXPECT_EQ(desktop.webViews.back()->htmlLoads.size(), loads);
}

TEST_F(SearchBarViewTest, aPromptThatWasCutIsToldUntilItIsShorter) {
  open();
  const auto tells = [&] {
    return tree().showsText("The prompt is too long for the field: its end was cut off.");
  };
  type("as much as the field holds");
  EXPECT_FALSE(tells());
  std::get<platform::TextFieldContent>(field().element().content).onCut();
  settle();
  EXPECT_TRUE(tells());
  type("as much as the field holdS");
  EXPECT_TRUE(tells());
  type("less");
  EXPECT_FALSE(tells());
}

TEST_F(SearchBarViewTest, anAnswerOfMoreThanAMegabyteIsShownAndKeptAsItsPromptAlone) {
  answerWith(std::string(longestStoredResult, 'x'));
  open();
  ask("long");
  EXPECT_GT(view().resultHtml.get().size(), longestStoredResult);
  const auto kept = UserDefaultsHelper().getSearchBarSearches();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_EQ(kept[0].searchPrompt, "long");
  EXPECT_FALSE(kept[0].resultMarkdown);
}

TEST_F(SearchBarViewTest, lineBreaksInAPromptAreSent) {
  answerWith("fine");
  open();
  ask("one\ntwo\r\nthree");
  EXPECT_EQ(sentPrompt(), "one\ntwo\r\nthree");
}

}  // namespace
}  // namespace velkin
