#include "Helpers/UserDefaultsHelper.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Onboarding/AboutUIView.h"
#include "Onboarding/EasterEggUrlEditingUIView.h"
#include "Onboarding/OnboardingBodies.h"
#include "Onboarding/OnboardingUIView.h"
#include "Onboarding/PageControlUIView.h"
#include "Platform/Headless/HeadlessPlatform.h"

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSHostingController;

class Pages : public AboutUIViewDelegate,
              public EasterEggUrlEditingUIViewDelegate,
              public OnboardingUIViewDelegate {
 public:
  std::vector<std::string> calls;
  void didEnableDisableEasterEgg() override { calls.emplace_back("switch"); }
  void didClickReleaseNotesButton() override { calls.emplace_back("notes"); }
  void didClickOnboardingButton() override { calls.emplace_back("onboarding"); }
  void didClickEditUrlsButton() override { calls.emplace_back("urls"); }
  void didClickToolbarCheckbox() override { calls.emplace_back("toolbar"); }
  void didClickStartAtLogin(bool isEnabled) override { calls.emplace_back(isEnabled ? "login" : "no login"); }
  void didClickEasterEggUrlEditingDone() override { calls.emplace_back("done"); }
  void didCompleteOnboarding() override { calls.emplace_back("completed"); }
};

class OnboardingPagesTest : public testing::Test {
 protected:
  ~OnboardingPagesTest() override { KeyboardShortcuts::shutDown(); }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  Pages pages;

  OnboardingUIView onboarding() {
    return {&pages,
            {.fontSize = platform::Text("the sizes of fonts"),
             .windowSize = platform::Text("the sizes of windows")}};
  }
  void press(platform::HeadlessHostingView& tree, std::string_view name) {
    auto* control = tree.control(name);
    ASSERT_NE(control, nullptr) << name;
    control->press();
    desktop.queue.drain();
  }
};

TEST_F(OnboardingPagesTest, LeadsThroughItsPagesInOrder) {
  defaults.set("https://chat.example.org/", UserDefault::chatUrl);
  desktop.urlSession.addAnswer("https://chat.example.org/", {});
  NSHostingController host(onboarding());
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("Welcome to Velkin"));
  EXPECT_TRUE(tree.showsText(
      "The feature rich menubar browser app. \nEnter URL then Click \"Next\" to get started. :-)"));
  EXPECT_FALSE(tree.control("Previous")->isEnabled());
  for (const auto* title :
       {"Select Font Size", "Select Window Size", "Keyboard Shortcuts", "Right Click Menu"}) {
    press(tree, "Next");
    EXPECT_TRUE(tree.showsText(title)) << title;
  }
  EXPECT_EQ(tree.control("Next"), nullptr);
  EXPECT_TRUE(tree.showsText("Right Click menu bar icon to see application menu."));
  press(tree, "Previous");
  EXPECT_TRUE(tree.showsText("Keyboard Shortcuts"));
  EXPECT_TRUE(tree.showsText("PopUp:")) << "whoever misses these keys elsewhere changes them here";
  press(tree, "Next");
  press(tree, "Done");
  EXPECT_EQ(pages.calls, std::vector<std::string>{"completed"});
  EXPECT_FALSE(defaults.onboardingCompleted()) << "the controller alone stores that";
}

TEST_F(OnboardingPagesTest, ThereIsNoWayOnWithoutAnAddress) {
  NSHostingController host(onboarding());
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  EXPECT_FALSE(tree.control("Next")->isEnabled());
  EXPECT_TRUE(desktop.urlSession.requests().empty());
  EXPECT_NE(tree.control("Click here to enter URL"), nullptr);
}

TEST_F(OnboardingPagesTest, AStoredAddressThatDoesntAnswerIsToldAndCanBeUsedAnyway) {
  defaults.set("https://chat.example.org/", UserDefault::onboardingChatURL);
  desktop.urlSession.addAnswer("https://chat.example.org/", {.statusCode = 405});
  NSHostingController host(onboarding());
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  EXPECT_FALSE(tree.control("Next")->isEnabled());
  EXPECT_TRUE(tree.showsText("URL invalid. Try again."));
  press(tree, "Use Anyway");
  EXPECT_TRUE(tree.control("Next")->isEnabled());
}

TEST_F(OnboardingPagesTest, WithTheAdditionalViewsThereIsThePageOfTheKey) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  const auto view = onboarding();
  ASSERT_EQ(view.pages.size(), 6U);
  EXPECT_EQ(view.pageCount, 6);
  EXPECT_EQ(view.pages[3].title, "Quick Search Bar");
  EXPECT_EQ(view.pages[3].id, 4);
  defaults.set(false, UserDefault::hemingwayEnabled);
  const auto slim = onboarding();
  ASSERT_EQ(slim.pages.size(), 5U);
  EXPECT_EQ(slim.pages[3].title, "Keyboard Shortcuts");
  EXPECT_EQ(slim.pages[3].id, 5);
  EXPECT_TRUE(slim.pages[3] == view.pages[4]);
  EXPECT_FALSE(slim.pages[3] == view.pages[3]);
}

TEST_F(OnboardingPagesTest, TheKeysPageOpensTheProvidersPageAndTakesTheKey) {
  NSHostingController host(OnboardingApiKeyUIView{});
  auto& tree = platform::headlessTree(host);
  press(tree, "Get Key");
  EXPECT_EQ(desktop.workspace.opened.size(), 1U);
  tree.field("Search Bar (ApiKey)")->type("sk-1");
  desktop.queue.drain();
  press(tree, "Save Search Bar (ApiKey)");
  EXPECT_EQ(defaults.getString(UserDefault::searchKey), "sk-1");
}

TEST_F(OnboardingPagesTest, AboutHasItsElementsInOrder) {
  NSHostingController host(AboutUIView{.delegate = &pages});
  auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("Velkin 1.0.0 (23)"));
  EXPECT_TRUE(tree.showsText("Toolkit 4.0, Web engine 2.0"));
  press(tree, "Release Notes");
  press(tree, "Onboarding");
  EXPECT_EQ(pages.calls, (std::vector<std::string>{"notes", "onboarding"}));
  press(tree, "Copy the versions for a bug report");
  EXPECT_EQ(desktop.pasteboard.string, "Velkin 1.0.0 (23), Toolkit 4.0, Web engine 2.0");
}

TEST_F(OnboardingPagesTest, AboutStoresTheStartAtLoginAndTellsItsDelegate) {
  NSHostingController host(AboutUIView{.delegate = &pages});
  auto& tree = platform::headlessTree(host);
  press(tree, "Start at Login");
  EXPECT_TRUE(defaults.startAtLogin());
  press(tree, "Start at Login");
  EXPECT_FALSE(defaults.startAtLogin());
  EXPECT_EQ(pages.calls, (std::vector<std::string>{"login", "no login"}));
}

TEST_F(OnboardingPagesTest, AboutExportsAndImportsTheSettingsAndTellsWhatWentWrong) {
  NSHostingController host(AboutUIView{.delegate = &pages});
  auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("User Data"));
  press(tree, "Export");
  EXPECT_EQ(desktop.openDialogs.savePanels.size(), 1U);
  press(tree, "Import");
  ASSERT_EQ(desktop.openDialogs.openPanels.size(), 1U);
  desktop.openDialogs.open("/nowhere/at all.json");
  desktop.queue.drain();
  if (desktop.openDialogs.press("Import")) desktop.queue.drain();
  bool isTold = false;
  for (const auto* text : tree.all<platform::TextContent>())
    isTold = isTold || text->element().modifiers.role == platform::AccessibilityRole::alert;
  EXPECT_TRUE(isTold);
}

TEST_F(OnboardingPagesTest, TheBuildDateIsInWordsOrNotThereAtAll) {
  const char* earlier = std::getenv("TZ");
  const std::string zone = earlier != nullptr ? earlier : "";
  setenv("TZ", "UTC", 1);
  tzset();
  AboutUIView about;
  about.dictionary.creationDate = 1'700'000'000;
  EXPECT_EQ(about.getBuildDate(), "This app was built on: Nov 14, 2023 10:13 PM");
  about.dictionary.creationDate = 1'700'006'400;
  EXPECT_EQ(about.getBuildDate(), "This app was built on: Nov 15, 2023 12:00 AM");
  about.dictionary.creationDate = 0;
  EXPECT_EQ(about.getBuildDate(), "");
  earlier != nullptr ? setenv("TZ", zone.c_str(), 1) : unsetenv("TZ");
  tzset();
  NSHostingController host(about);
  for (const auto* text : platform::headlessTree(host).all<platform::TextContent>())
    EXPECT_EQ(text->text().find("built on"), std::string::npos);
}

TEST_F(OnboardingPagesTest, TheSeventhTapTurnsTheAdditionalViewsAndTheCountStartsAnew) {
  NSHostingController host(AboutUIView{.delegate = &pages});
  auto& tree = platform::headlessTree(host);
  for (int tap = 0; tap < 6; ++tap) press(tree, "Velkin");
  EXPECT_FALSE(defaults.hemingwayEnabled());
  press(tree, "Velkin");
  EXPECT_TRUE(defaults.hemingwayEnabled());
  EXPECT_EQ(pages.calls, std::vector<std::string>{"switch"});
  press(tree, "-- Edit URLs & API Key --");
  EXPECT_EQ(pages.calls.back(), "urls");
  for (int tap = 0; tap < 7; ++tap) press(tree, "Velkin");
  EXPECT_FALSE(defaults.hemingwayEnabled());
  EXPECT_EQ(tree.control("-- Edit URLs & API Key --"), nullptr);
}

TEST_F(OnboardingPagesTest, ACountOfTapsGoesWithTheView) {
  {
    NSHostingController host(AboutUIView{.delegate = &pages});
    for (int tap = 0; tap < 6; ++tap) press(platform::headlessTree(host), "Velkin");
  }
  NSHostingController host(AboutUIView{.delegate = &pages});
  press(platform::headlessTree(host), "Velkin");
  EXPECT_FALSE(defaults.hemingwayEnabled());
}

TEST_F(OnboardingPagesTest, TheEditingPageHasTheListAndTheShortcuts) {
  NSHostingController host(EasterEggUrlEditingUIView{.delegate = &pages});
  auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("Edit Shortcut"));
  EXPECT_TRUE(tree.showsText("Note: Reload while on page ('⌘⌥R') to use updated URLs."));
  EXPECT_NE(tree.field("AI URL"), nullptr);
  AdditionalViews().set(true);
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("Edit Shortcuts & URLs"));
  EXPECT_NE(tree.field("Jira URL"), nullptr);
  press(tree, "Next");
  EXPECT_TRUE(tree.showsText("SearchBar:"));
  press(tree, "Done");
  EXPECT_EQ(pages.calls, std::vector<std::string>{"done"});
}

TEST_F(OnboardingPagesTest, TheMarksSayWhichPageItIs) {
  NSHostingController host(OnboardingPageIndicator{5, 1});
  const auto& root = *platform::headlessTree(host).roots().front();
  EXPECT_EQ(root.element().modifiers.label, "Page 2 of 5");
  EXPECT_EQ(root.children().size(), 5U);
}

}  // namespace
}  // namespace velkin
