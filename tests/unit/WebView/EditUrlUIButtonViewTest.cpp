#include "Helpers/UserDefaultsHelper.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Values/WebViewSwitchType.h"
#include "WebView/EditUrlUIButtonView.h"
#include "WebView/WebViewHelper.h"

#include <string>

#include <gtest/gtest.h>

namespace velkin {
namespace {

class EditUrlUIButtonViewTest : public testing::Test {
 protected:
  EditUrlUIButtonViewTest() {
    defaults.set(rawValue(WebViewSwitchType::jira), UserDefault::lastVisibleWebView);
    defaults.set("https://jira.example.org/", UserDefault::jiraUrl);
  }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  WebViewHelper helper;
};

TEST_F(EditUrlUIButtonViewTest, StoresWhereThePageIsOrTheBuiltInAddressAndReloadsNothing) {
  const auto page = helper.getWebUIView(WebViewSwitchType::jira);
  auto& engine = dynamic_cast<platform::HeadlessWebView&>(*page.webView);
  engine.load({*platform::URL::parse("https://jira.example.org/board/7")});
  const auto loads = engine.loads.size();
  platform::NSHostingController host(EditUrlUIButtonView{.webButton = page});
  auto& tree = platform::headlessTree(host);
  EXPECT_FALSE(tree.showsText("URL Settings"));
  tree.control("Page Settings")->press();
  desktop.queue.drain();
  EXPECT_TRUE(tree.showsText("URL Settings"));
  EXPECT_TRUE(tree.showsText(
      "Enter custom url or use the action buttons.\nThis will change the saved url for this page only."));
  EXPECT_TRUE(tree.showsText("Hover over buttons for details."));
  EXPECT_TRUE(tree.showsText("https://jira.example.org/"));
  EXPECT_NE(tree.control("Change saved URL to:\n\nhttps://jira.example.org/board/7"), nullptr);
  tree.control("Update")->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::jiraUrl), "https://jira.example.org/board/7");
  EXPECT_TRUE(tree.showsText("https://jira.example.org/board/7"));
  tree.control("Reset")->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.getString(UserDefault::jiraUrl), defaultUrlString(WebViewSwitchType::jira));
  EXPECT_EQ(engine.loads.size(), loads);
}

TEST_F(EditUrlUIButtonViewTest, WithoutAPageThereIsNothingToUpdateTo) {
  platform::NSHostingController host(EditUrlUIButtonView{});
  auto& tree = platform::headlessTree(host);
  tree.control("Page Settings")->press();
  desktop.queue.drain();
  EXPECT_FALSE(tree.control("Update")->isEnabled());
}

}  // namespace
}  // namespace velkin
