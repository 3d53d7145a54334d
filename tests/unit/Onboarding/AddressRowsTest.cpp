#include "Components/OnboardingEditChatUrlUIView.h"
#include "Helpers/UserDefaultsHelper.h"
#include "Helpers/ViewAddresses.h"
#include "Onboarding/EasterEggEnabledUIView.h"
#include "Onboarding/EasterEggFeatureLabelUIView.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "UserData/AdditionalViews.h"
#include "Values/AddressText.h"
#include "Values/UserAgents.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::HeadlessURLSession;
using platform::NSHostingController;

class AddressRowsTest : public testing::Test {
 protected:
  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  platform::State<bool> isValid{false};
  std::vector<std::string> stored;

  OnboardingEditChatUrlUIView row(std::string initial = {}) {
    return {.initialText = std::move(initial),
            .isValidURL = isValid.binding(),
            .action = [this](const std::string& text) { stored.push_back(text); }};
  }
  void answer(const std::string& address, HeadlessURLSession::Answer answer) {
    desktop.urlSession.addAnswer(address, std::move(answer));
  }
};

TEST_F(AddressRowsTest, AnEmptyRowSaysWhatToDoAndStartsFromTheBuiltInAddress) {
  NSHostingController host(row());
  auto& tree = platform::headlessTree(host);
  ASSERT_NE(tree.control("Click here to enter URL"), nullptr);
  tree.control("Click here to enter URL")->press();
  desktop.queue.drain();
  ASSERT_NE(tree.field("URL"), nullptr);
  EXPECT_EQ(std::get<platform::TextFieldContent>(tree.field("URL")->element().content).text.get(),
            url(EasterEggItem::chatGPT));
}

TEST_F(AddressRowsTest, AnAddressThatAnswersIsStoredUnderBothKeys) {
  answer("https://chat.example.org/", {});
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type(" https://chat.example.org/\n");
  desktop.queue.drain();
  tree.control("✓")->press();
  desktop.queue.drain();
  EXPECT_TRUE(isValid.get());
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "https://chat.example.org/");
  EXPECT_EQ(defaults.onboardingChatURL(), "https://chat.example.org/");
  EXPECT_EQ(stored, std::vector<std::string>{"https://chat.example.org/"});
  EXPECT_TRUE(tree.showsText("https://chat.example.org/"));
  EXPECT_EQ(tree.field("URL"), nullptr) << "editing is over";
  const auto asked = desktop.urlSession.requests();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(asked[0].httpMethod, "HEAD");
  EXPECT_EQ(asked[0].allHTTPHeaderFields.at("User-Agent"), customUserAgent(WebViewSwitchType::chatgpt));
}

TEST_F(AddressRowsTest, ARefusedAddressStaysInTheFieldAndCanBeUsedAnyway) {
  answer("https://chat.example.org/", {.statusCode = 403});
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type("https://chat.example.org/");
  tree.field("URL")->commit();
  desktop.queue.drain();
  EXPECT_FALSE(isValid.get());
  EXPECT_TRUE(tree.showsText("URL invalid. Try again."));
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
  ASSERT_NE(tree.control("Use Anyway"), nullptr);
  tree.control("Use Anyway")->press();
  desktop.queue.drain();
  EXPECT_TRUE(isValid.get());
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "https://chat.example.org/");
  EXPECT_FALSE(tree.showsText("URL invalid. Try again."));
}

TEST_F(AddressRowsTest, OnlyAWebAddressCanBeUsedAnyway) {
  for (const auto* text : {"javascript:alert(1)", "file:///etc/passwd", "chat.example.org", "https:///x"}) {
    NSHostingController host(row("https://old.example.org/"));
    auto& tree = platform::headlessTree(host);
    tree.control("https://old.example.org/")->press();
    desktop.queue.drain();
    tree.field("URL")->type(text);
    tree.field("URL")->commit();
    desktop.queue.drain();
    EXPECT_TRUE(tree.showsText("URL invalid. Try again.")) << text;
    EXPECT_EQ(tree.control("Use Anyway"), nullptr) << text;
  }
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
}

TEST_F(AddressRowsTest, ATextThatDoesntParseChangesNothing) {
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type("not a web address");
  desktop.queue.drain();
  EXPECT_FALSE(tree.control("✓")->isEnabled());
  tree.field("URL")->commit();
  desktop.queue.drain();
  EXPECT_TRUE(desktop.urlSession.requests().empty());
  EXPECT_FALSE(tree.showsText("URL invalid. Try again."));
}

TEST_F(AddressRowsTest, WhatIsNoAddressOfTheWebIsNeverAskedNorStored) {
  for (const auto* text : {"https://chat.example.org/a\nb", "https://", ""}) {
    NSHostingController host(row("https://old.example.org/"));
    auto& tree = platform::headlessTree(host);
    tree.control("https://old.example.org/")->press();
    desktop.queue.drain();
    tree.field("URL")->type(text);
    desktop.queue.drain();
    tree.field("URL")->commit();
    desktop.queue.drain();
    EXPECT_EQ(tree.control("Use Anyway"), nullptr) << text;
    EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "") << text;
  }
}

TEST_F(AddressRowsTest, AnAddressOfAMegabyteIsAskedLikeAnyOther) {
  const auto address = "https://chat.example.org/" + std::string(1 << 20, 'a');
  answer(address, {.statusCode = 414});
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type(address);
  tree.field("URL")->commit();
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("URL invalid. Try again."));
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
}

TEST_F(AddressRowsTest, AChangeOfTheTextEndsTheCheckAndItsAnswerIsVoid) {
  desktop.urlSession.setDelivery(HeadlessURLSession::Delivery::held);
  answer("https://slow.example.org/", {});
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type("https://slow.example.org/");
  tree.field("URL")->commit();
  desktop.queue.drain();
  EXPECT_EQ(tree.all<platform::ProgressContent>().size(), 1U);
  tree.field("URL")->type("https://other.example.org/");
  desktop.queue.drain();
  EXPECT_TRUE(tree.all<platform::ProgressContent>().empty());
  desktop.urlSession.deliver();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
  EXPECT_FALSE(isValid.get());
  EXPECT_NE(tree.field("URL"), nullptr);
}

TEST_F(AddressRowsTest, ResetBringsTheFirstTextBackWithoutAsking) {
  NSHostingController host(row("https://old.example.org/"));
  auto& tree = platform::headlessTree(host);
  tree.control("https://old.example.org/")->press();
  desktop.queue.drain();
  tree.field("URL")->type("https://new.example.org/");
  desktop.queue.drain();
  tree.control("↺")->press();
  desktop.queue.drain();
  EXPECT_EQ(std::get<platform::TextFieldContent>(tree.field("URL")->element().content).text.get(),
            "https://old.example.org/");
  EXPECT_TRUE(desktop.urlSession.requests().empty());
}

TEST_F(AddressRowsTest, ChecksWhatItShowsAtFirstWithoutStoringIt) {
  answer("https://old.example.org/", {});
  auto checked = row("https://old.example.org/");
  checked.validatesAtFirst = true;
  NSHostingController host(checked);
  auto& tree = platform::headlessTree(host);
  desktop.queue.drain();
  EXPECT_TRUE(isValid.get());
  EXPECT_TRUE(stored.empty());
  EXPECT_EQ(tree.field("URL"), nullptr);
}

TEST_F(AddressRowsTest, AnotherViewsAddressIsItsOwn) {
  answer("https://bard.example.org/", {});
  auto bard = row("https://old.example.org/");
  bard.item = EasterEggItem::bard;
  bard.validatAndSetUrl("https://bard.example.org/");
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::bardUrl), "https://bard.example.org/");
  EXPECT_EQ(defaults.getString(UserDefault::chatUrl), "");
  EXPECT_EQ(defaults.onboardingChatURL(), "");
}

TEST_F(AddressRowsTest, TheListHasOneRowOrSeven) {
  NSHostingController host(EasterEggEnabledUIView{});
  auto& tree = platform::headlessTree(host);
  EXPECT_TRUE(tree.showsText("URL"));
  EXPECT_EQ(tree.all<platform::TextFieldContent>().size(), 1U);
  AdditionalViews().set(true);
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("Additional Views Enabled :-)"));
  ASSERT_EQ(tree.all<platform::TextFieldContent>().size(), 7U);
  EXPECT_EQ(tree.all<platform::TextFieldContent>().back()->element().modifiers.label, "Search Bar (ApiKey)");
}

TEST_F(AddressRowsTest, ARowSavesWhatIsTypedOnceAndWithoutACheck) {
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::jira});
  auto& tree = platform::headlessTree(host);
  EXPECT_FALSE(tree.control("Save Jira")->isEnabled());
  tree.field("Jira URL")->type(url(EasterEggItem::jira));
  desktop.queue.drain();
  EXPECT_FALSE(tree.control("Save Jira")->isEnabled()) << "that is stored already";
  tree.field("Jira URL")->type("https://jira.example.org/");
  desktop.queue.drain();
  tree.control("Save Jira")->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::jiraUrl), "https://jira.example.org/");
  EXPECT_FALSE(tree.control("Save Jira")->isEnabled());
  EXPECT_FALSE(tree.showsText("This is no web address."));
  EXPECT_TRUE(desktop.urlSession.requests().empty());
}

TEST_F(AddressRowsTest, WhatARowStoresAlwaysParses) {
  const std::vector<std::string> texts = {"two words",
                                          "https://a b/ü?x=[1]#a#b",
                                          "javascript:alert(1)",
                                          "100%",
                                          "http://[broken",
                                          "http://host:port/",
                                          "https://münchen.de",
                                          "\xFF\xFE",
                                          std::string(1 << 20, '<'),
                                          "a\nb",
                                          "1:2"};
  for (const auto& text : texts) {
    const auto kept = storableAddress(text);
    EXPECT_TRUE(platform::URL::parse(kept).has_value()) << text.substr(0, 40);
    setUrl(EasterEggItem::gitLab, kept);
    EXPECT_FALSE(url(EasterEggItem::gitLab).empty());
  }
  EXPECT_EQ(storableAddress(" https://example.org/a%20b "), "https://example.org/a%20b");
  EXPECT_EQ(storableAddress("https://example.org/a b"), "https://example.org/a%20b");
  EXPECT_EQ(storableAddress(" "), "");
}

TEST_F(AddressRowsTest, ARowSaysThatWhatItSavedIsNoWebAddress) {
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::gitLab});
  auto& tree = platform::headlessTree(host);
  tree.field("GitLab URL")->type("file:///etc/passwd");
  desktop.queue.drain();
  tree.control("Save GitLab")->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::gitUrl), "file:///etc/passwd");
  EXPECT_TRUE(tree.showsText("This is no web address."));
}

TEST_F(AddressRowsTest, ARowSaysSoOfEveryTextThatIsNoWebAddressAndKeepsWhatParses) {
  for (const auto* text :
       {"javascript:alert(1)", "file:///etc/passwd", "chat.example.org", "a\nb", "two words"}) {
    NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::gitLab});
    auto& tree = platform::headlessTree(host);
    tree.field("GitLab URL")->type(text);
    desktop.queue.drain();
    tree.control("Save GitLab")->press();
    desktop.queue.drain();
    EXPECT_TRUE(tree.showsText("This is no web address.")) << text;
    EXPECT_TRUE(platform::URL::parse(defaults.getString(UserDefault::gitUrl))) << text;
  }
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::gitLab});
  auto& tree = platform::headlessTree(host);
  tree.field("GitLab URL")->type("https://m\xC3\xBCnchen.de/");
  desktop.queue.drain();
  tree.control("Save GitLab")->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::gitUrl), "https://m\xC3\xBCnchen.de/");
  EXPECT_FALSE(tree.showsText("This is no web address."));
}

TEST_F(AddressRowsTest, InANarrowWindowTheTitleStandsAboveItsField) {
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::jira});
  auto& tree = platform::headlessTree(host);
  const auto isBeside = [&] {
    const auto* field = tree.field("Jira URL");
    const auto rows = tree.all([&](const platform::HeadlessView& view) {
      return std::ranges::find(view.children(), field) != view.children().end();
    });
    return rows.at(0)->text().find("Jira") != std::string::npos;
  };
  EXPECT_TRUE(isBeside());
  tree.field("Jira URL")->type("https://jira.example.org/");
  defaults.set(340.0, UserDefault::webViewWidth);
  WindowAppearance::didChange();
  desktop.queue.drain();
  EXPECT_FALSE(isBeside());
  EXPECT_EQ(std::get<platform::TextFieldContent>(tree.field("Jira URL")->element().content).text.get(),
            "https://jira.example.org/");
}

TEST_F(AddressRowsTest, ResetInARowGoesBackToWhatIsStored) {
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::jira});
  auto& tree = platform::headlessTree(host);
  const auto text = [&] {
    return std::get<platform::TextFieldContent>(tree.field("Jira URL")->element().content).text.get();
  };
  tree.field("Jira URL")->type("https://one.example.org/");
  desktop.queue.drain();
  tree.control("Reset Jira")->press();
  desktop.queue.drain();
  EXPECT_EQ(text(), "") << "nothing was saved here yet";
  tree.field("Jira URL")->type("https://one.example.org/");
  desktop.queue.drain();
  tree.control("Save Jira")->press();
  tree.field("Jira URL")->type("https://two.example.org/");
  desktop.queue.drain();
  tree.control("Reset Jira")->press();
  desktop.queue.drain();
  EXPECT_EQ(text(), "https://one.example.org/");
}

TEST_F(AddressRowsTest, TheKeyIsStoredAsItIsAndNeverShownUnasked) {
  defaults.set("sk-old-secret", UserDefault::searchKey);
  NSHostingController host(EasterEggFeatureLabelUIView{.item = EasterEggItem::search});
  auto& tree = platform::headlessTree(host);
  auto* field = tree.field("Search Bar (ApiKey)");
  const auto content = [&] { return std::get<platform::TextFieldContent>(field->element().content); };
  EXPECT_EQ(content().placeholder.find("sk-"), std::string::npos);
  EXPECT_TRUE(content().isSecure);
  field->type("sk new%key");
  desktop.queue.drain();
  tree.control("Hold down to show the key")->holdDown(true);
  desktop.queue.drain();
  EXPECT_FALSE(content().isSecure);
  tree.control("Hold down to show the key")->holdDown(false);
  desktop.queue.drain();
  EXPECT_TRUE(content().isSecure);
  tree.control("Save Search Bar (ApiKey)")->press();
  EXPECT_EQ(defaults.getString(UserDefault::searchKey), "sk new%key");
}

}  // namespace
}  // namespace velkin
