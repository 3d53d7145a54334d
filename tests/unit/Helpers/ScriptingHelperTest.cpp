#include "Helpers/ScriptingHelper.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using enum WebViewFindType;

class ScriptingHelperTest : public AppFixture {
 protected:
  ScriptingHelperTest() { page->load(platform::URLRequest{*platform::URL::parse("https://chat.test/c/1")}); }
  bool isFullForm(std::size_t script) {
    return page->scripts[script].find("querySelectorAll") != std::string::npos;
  }

  std::shared_ptr<platform::HeadlessWebView> page =
      std::make_shared<platform::HeadlessWebView>(platform::NSRect{}, platform::WKWebViewConfiguration{});
  std::shared_ptr<ScriptingHelper> helper = ScriptingHelper::make();
};

TEST_F(ScriptingHelperTest, TheFullScriptRunsOnceInAPageAndItsLastLineAfterThat) {
  helper->submitForm(page);
  helper->submitForm(page);
  ASSERT_EQ(page->scripts.size(), 2U);
  EXPECT_TRUE(isFullForm(0));
  EXPECT_TRUE(page->scripts[0].ends_with("}\n\nsubmitButton.click()"));
  EXPECT_EQ(page->scripts[1], "submitButton.click()");
}

TEST_F(ScriptingHelperTest, AReloadOrAnotherAddressNeedsTheFullScriptAgain) {
  helper->submitForm(page);
  helper->pageReloaded();
  helper->submitForm(page);
  EXPECT_TRUE(isFullForm(1));
  page->load(platform::URLRequest{*platform::URL::parse("https://chat.test/c/2")});
  helper->submitForm(page);
  EXPECT_TRUE(isFullForm(2));
}

TEST_F(ScriptingHelperTest, AFailedScriptIsLoggedAndCounts) {
  page->scriptError = platform::NSError{"WKErrorDomain", 4, "no form"};
  helper->submitForm(page);
  EXPECT_TRUE(hasLogged("Q$: ScriptingHelper::submitForm() JavaScript error: WKErrorDomain 4"));
  helper->submitForm(page);
  EXPECT_EQ(page->scripts[1], "submitButton.click()");
}

TEST_F(ScriptingHelperTest, OtherViewsSubmitNothing) {
  defaults.set(rawValue(WebViewSwitchType::bard), UserDefault::lastVisibleWebView);
  helper->chatSubmitClicked = true;
  helper->submitForm(page);
  helper->pageReloaded();
  EXPECT_TRUE(page->scripts.empty());
  EXPECT_TRUE(helper->chatSubmitClicked);
}

/// A page that takes its time.
class SlowWebView : public platform::HeadlessWebView {
 public:
  explicit SlowWebView(ScriptCompletion& waitingCompletion)
      : HeadlessWebView({}, {}), waiting(waitingCompletion) {}
  void evaluateJavaScript(const std::string& script, ScriptCompletion completion) override {
    scripts.push_back(script);
    waiting = std::move(completion);
  }
  ScriptCompletion& waiting;
};

TEST_F(ScriptingHelperTest, TheAddressIsTheOneAtTheEndOfTheScript) {
  platform::WKWebView::ScriptCompletion end;
  const auto slow = std::make_shared<SlowWebView>(end);
  helper->submitForm(slow);
  EXPECT_FALSE(helper->chatSubmitClicked);
  slow->load(platform::URLRequest{*platform::URL::parse("https://chat.test/c/9")});
  end("true", std::nullopt);
  EXPECT_TRUE(helper->chatSubmitClicked);
  EXPECT_EQ(helper->currentWebUrl, "https://chat.test/c/9");
}

TEST_F(ScriptingHelperTest, ASubmitWhosePageHasGoneEndsAsOneWithoutAnAddress) {
  helper->submitForm(page);
  platform::WKWebView::ScriptCompletion end;
  auto slow = std::make_shared<SlowWebView>(end);
  slow->load(platform::URLRequest{*platform::URL::parse("https://chat.test/c/9")});
  helper->submitForm(slow);
  slow.reset();
  end(std::nullopt, platform::NSError{"WKErrorDomain", 4, "gone"});
  EXPECT_EQ(helper->currentWebUrl, "");
  EXPECT_TRUE(helper->chatSubmitClicked);
}

TEST_F(ScriptingHelperTest, AnEndThatComesAfterTheHelpersTouchesNothing) {
  platform::WKWebView::ScriptCompletion end;
  helper->submitForm(std::make_shared<SlowWebView>(end));
  helper.reset();
  end("true", platform::NSError{"WKErrorDomain", 4, "late"});
  EXPECT_FALSE(hasLogged("late"));
}

TEST_F(ScriptingHelperTest, APageWithoutAnAddressGetsTheFullScriptEachTime) {
  const auto blank =
      std::make_shared<platform::HeadlessWebView>(platform::NSRect{}, platform::WKWebViewConfiguration{});
  helper->submitForm(blank);
  helper->submitForm(blank);
  ASSERT_EQ(blank->scripts.size(), 2U);
  EXPECT_EQ(blank->scripts[0], blank->scripts[1]);
  EXPECT_NE(blank->scripts[1], "submitButton.click()");
}

TEST_F(ScriptingHelperTest, TheFullScriptIsThisToTheByte) {
  helper->submitForm(page);
  EXPECT_EQ(page->scripts[0], R"(// find the button element that is a sibling of the text area
const textAreas = document.querySelectorAll('form .m-0');
const textArea = textAreas[textAreas.length - 1];
const submitButton = textArea.nextSibling;

while (submitButton && submitButton.nodeType !== Node.ELEMENT_NODE) {
 // skip non-element nodes (e.g. text nodes)
    submitButton = submitButton.nextSibling;
}

submitButton.click())");
}

TEST_F(ScriptingHelperTest, AResultThatIsNeitherTrueNorFalseIsNone) {
  for (const char* result : {"", "1", "\"true\"", "null"}) {
    page->scripts.clear();
    page->scriptResult = result;
    bool isCalled = false;
    helper->startFinding("x", page, [&](bool) { isCalled = true; });
    EXPECT_FALSE(isCalled) << result;
    EXPECT_EQ(page->scripts.size(), 1U) << result;
  }
}

TEST_F(ScriptingHelperTest, TheScrollAreaIsClickedAndScrolled) {
  helper->selectScrollArea(*page);
  EXPECT_EQ(page->scripts[0],
            "var flexElement = document.querySelector('.flex.w-full');\nflexElement.click();");
  EXPECT_EQ(page->pagesUp, 1);
}

TEST_F(ScriptingHelperTest, FindScriptsDifferInTheirDirection) {
  EXPECT_EQ(ScriptingHelper::getFindScript("a", next), "window.find('a', false, false, true, true, true);");
  EXPECT_EQ(ScriptingHelper::getFindScript("a", find), "window.find('a', false, false, true, true, true);");
  EXPECT_EQ(ScriptingHelper::getFindScript("a", previous),
            "window.find('a', false, true, true, true, true);");
  EXPECT_EQ(ScriptingHelper::getFindScript("a", done), "window.stop();");
}

TEST_F(ScriptingHelperTest, TheTextIsPercentEncodedAsInAQuery) {
  const auto encoded = [](std::string_view text) {
    const auto script = ScriptingHelper::getFindScript(text, next);
    return script.substr(13, script.find("', false") - 13);
  };
  EXPECT_EQ(encoded("two words"), "two%20words");
  EXPECT_EQ(encoded("it's"), "it's");
  EXPECT_EQ(encoded("ü"), "%C3%BC");
  EXPECT_EQ(encoded("a\"<>#%[]^`{|}\\"), "a%22%3C%3E%23%25%5B%5D%5E%60%7B%7C%7D%5C");
  EXPECT_EQ(encoded("!$&()*+,-./:;=?@_~"), "!$&()*+,-./:;=?@_~");
  EXPECT_EQ(ScriptingHelper::getFindScript("\xff", next), "");
}

TEST_F(ScriptingHelperTest, AHitIsPassedAtOnce) {
  page->scriptResult = "true";
  std::optional<bool> found;
  helper->startFinding("x", page, [&](bool isFound) { found = isFound; });
  EXPECT_EQ(found, true);
  EXPECT_EQ(page->scripts.size(), 2U);
  EXPECT_EQ(page->scripts[0], page->scripts[1]);
}

TEST_F(ScriptingHelperTest, NoHitIsToldAndLogged) {
  page->scriptResult = "false";
  std::optional<bool> found;
  helper->startFinding("x y", page, [&](bool isFound) { found = isFound; });
  EXPECT_EQ(found, false);
  EXPECT_EQ(page->scripts.size(), 1U);
  EXPECT_TRUE(hasLogged("No results found for a text of 3 characters"));
}

TEST_F(ScriptingHelperTest, AFailingSearchTellsNobodyButTheLog) {
  page->scriptError = platform::NSError{"WKErrorDomain", 4, "SyntaxError: Unexpected identifier 'its'"};
  bool isCalled = false;
  helper->startFinding("its", page, [&](bool) { isCalled = true; });
  EXPECT_FALSE(isCalled);
  EXPECT_TRUE(hasLogged("Error searching for a text of 3 characters: WKErrorDomain 4, SyntaxError"));
  EXPECT_FALSE(hasLogged("its"));
}

TEST_F(ScriptingHelperTest, ATextThatWouldEndItsLiteralFailsWithoutRunning) {
  for (const std::string text : {"it's", "');window.x=document.cookie;('", "'"}) {
    log.clear();
    bool isCalled = false;
    page->scriptResult = "true";
    helper->startFinding(text, page, [&](bool) { isCalled = true; });
    helper->nextClicked(text, *page);
    helper->previousClicked(text, *page);
    EXPECT_FALSE(isCalled);
    EXPECT_TRUE(page->scripts.empty()) << page->scripts.front();
    EXPECT_TRUE(hasLogged("Error searching for a text of "));
    EXPECT_EQ(log.size(), 1U);
  }
  helper->stopFinding("it's", *page);
  EXPECT_EQ(page->scripts, std::vector<std::string>{"window.stop();"});
}

class FindBarTest : public AppFixture {
 protected:
  FindBarTest() {
    settleIn();
    controller = &launch();
    leftClick();
    controller->handleWindowFindOnPage();
    desktop.queue.drain();
  }
  platform::HeadlessHostingView& tree() { return platform::headlessTree(*controller->hostedWebView()); }
  platform::HeadlessWebView& page() { return engineOf(controller->chatWebView()); }
  void find(const char* text, const char* result) {
    page().scriptResult = result;
    tree().field("Search")->type(text);
    tree().field("Search")->commit();
    desktop.queue.drain();
  }
  bool stepsAreEnabled() { return tree().control(" ⟨ ")->isEnabled() && tree().control(" ⟩ ")->isEnabled(); }

  VelkinImpl* controller;
};

TEST_F(FindBarTest, OpensWithItsFieldFocusedAndItsStepsOff) {
  ASSERT_NE(tree().field("Search"), nullptr);
  EXPECT_TRUE(tree().field("Search")->element().modifiers.focused->get());
  EXPECT_FALSE(stepsAreEnabled());
  EXPECT_FALSE(tree().showsText("Not\nfound"));
}

TEST_F(FindBarTest, AHitTurnsTheStepsOnAndTypingTurnsThemOffUntilTheNextReturn) {
  find("word", "true");
  EXPECT_TRUE(stepsAreEnabled());
  tree().field("Search")->type("words");
  desktop.queue.drain();
  EXPECT_FALSE(stepsAreEnabled());
  find("words", "true");
  EXPECT_TRUE(stepsAreEnabled());
  tree().control(" ⟨ ")->press();
  EXPECT_NE(page().scripts.back().find("'words', false, true"), std::string::npos);
  tree().control(" ⟩ ")->press();
  EXPECT_NE(page().scripts.back().find("'words', false, false"), std::string::npos);
}

TEST_F(FindBarTest, NoHitShowsItAndTypingHidesItAgain) {
  find("word", "false");
  EXPECT_TRUE(tree().showsText("Not\nfound"));
  EXPECT_FALSE(stepsAreEnabled());
  tree().field("Search")->type("wor");
  desktop.queue.drain();
  EXPECT_FALSE(tree().showsText("Not\nfound"));
}

TEST_F(FindBarTest, ReturnInAnEmptyFieldSearchesForTheEmptyText) {
  tree().field("Search")->commit();
  EXPECT_EQ(page().scripts.back(), "window.find('', false, false, true, true, true);");
}

TEST_F(FindBarTest, AFailedSearchLeavesTheBarAsItWas) {
  find("word", "true");
  page().scriptError = platform::NSError{"WKErrorDomain", 4, "syntax"};
  tree().field("Search")->commit();
  desktop.queue.drain();
  EXPECT_TRUE(stepsAreEnabled());
  EXPECT_FALSE(tree().showsText("Not\nfound"));
}

TEST_F(FindBarTest, AnEmptiedFieldTurnsTheStepsOffAndTheNextBarHasTheKeyboardAgain) {
  find("word", "true");
  tree().field("Search")->type("");
  desktop.queue.drain();
  EXPECT_FALSE(stepsAreEnabled());
  controller->handleEsc();
  desktop.queue.drain();
  controller->handleWindowFindOnPage();
  desktop.queue.drain();
  ASSERT_NE(tree().field("Search"), nullptr);
  EXPECT_TRUE(tree().field("Search")->element().modifiers.focused->get());
}

TEST_F(FindBarTest, ASwitchKeepsTheBarAndForgetsItsText) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  find("word", "true");
  controller->switchWebViews(WebViewSwitchType::jira);
  desktop.queue.drain();
  ASSERT_NE(tree().field("Search"), nullptr);
  EXPECT_FALSE(stepsAreEnabled());
  tree().field("Search")->commit();
  EXPECT_EQ(engineOf(controller->jiraWebView()).scripts.back(),
            "window.find('', false, false, true, true, true);");
}

TEST_F(FindBarTest, EscapeStopsFindingAsDoneDoes) {
  const auto scripts = page().scripts.size();
  controller->handleEsc();
  ASSERT_EQ(page().scripts.size(), scripts + 1);
  EXPECT_EQ(page().scripts.back(), "window.stop();");
  EXPECT_TRUE(popover().isShown());
}

TEST_F(FindBarTest, DoneGivesTheKeyboardBackToThePage) {
  page().isFirstResponder = false;
  tree().control("Done")->press();
  EXPECT_TRUE(page().isFirstResponder);
}

TEST_F(FindBarTest, DoneAndEscapeCloseItAndStopFinding) {
  tree().control("Done")->press();
  desktop.queue.drain();
  EXPECT_EQ(page().scripts.back(), "window.stop();");
  EXPECT_EQ(tree().field("Search"), nullptr);
  controller->handleWindowFindOnPage();
  desktop.queue.drain();
  ASSERT_NE(tree().field("Search"), nullptr);
  EXPECT_TRUE(tree().field("Search")->element().modifiers.focused->get());
  controller->handleEsc();
  desktop.queue.drain();
  EXPECT_EQ(tree().field("Search"), nullptr);
  EXPECT_TRUE(page().isFirstResponder);
}

TEST_F(FindBarTest, TheToolbarsButtonsTellTheController) {
  // The sixth one has settings of its own.
  EXPECT_EQ(tree().all<platform::ButtonContent>().size(), 6U + 3U);
  const auto loads = page().loads.size();
  const auto button = [&](const char* tooltip) {
    return tree().control(std::string(tooltip) + "\n⌘ Ctrl   ⌥ Alt   ⌃ Super   ⇧ Shift");
  };
  ASSERT_NE(button("Return to Home (⌘⌃R)"), nullptr);
  button("Return to Home (⌘⌃R)")->press();
  EXPECT_EQ(page().loads.size(), loads + 1);
  button("Reload Page (⌘R)")->press();
  desktop.queue.drain();
  EXPECT_EQ(page().reloads, 1);
  button("Open In Browser (⌘O)")->press();
  EXPECT_EQ(desktop.workspace.opened.size(), 1U);
  button("Appearance Setting (⌘⇧S)")->press();
  EXPECT_TRUE(desktop.panels.back()->isVisible());
  EXPECT_THROW(button("Quit (⌘Q)")->press(), platform::ExitCalled);
}

}  // namespace
}  // namespace velkin
