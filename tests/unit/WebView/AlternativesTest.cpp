#include "Helpers/ViewAddresses.h"
#include "WebView/Alternatives/PresentationAnimators.h"
#include "WebView/Alternatives/TrimmedWebView.h"
#include "WebView/Alternatives/WebViewHostingController.h"
#include "WebView/WebViewHelper.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using AlternativesTest = AppFixture;
using platform::NSHostingController;

TEST_F(AlternativesTest, ATrimmedPageIsItsOwnDelegateAndRunsItsScriptAfterALoad) {
  TrimmedWkWebView trimmed;
  EXPECT_EQ(trimmed.webView->uiDelegate, &trimmed);
  auto& engine = dynamic_cast<platform::HeadlessWebView&>(*trimmed.webView);
  trimmed.didFinish(engine);
  EXPECT_EQ(engine.scripts, std::vector<std::string>{trimmed.scriptString});
  EXPECT_NE(trimmed.cssString.find("opacity: 0"), std::string::npos);
  EXPECT_NE(trimmed.htmlString.find("<title>ChatGPT</title>"), std::string::npos);
}

TEST_F(AlternativesTest, AScriptedControllerPutsItsStyleIntoAScript) {
  ScriptedViewController controller("b{}");
  EXPECT_EQ(controller.source(),
            "  var style = document.createElement('style');\n  style.innerHTML = 'b{}';\n"
            "  document.head.appendChild(style);");
  EXPECT_EQ(controller.webView(), controller.webView());
}

TEST_F(AlternativesTest, ATrimmedViewLoadsItsAddressAtItsUpdate) {
  const TrimmedWebView trimmed{getUrl(WebViewSwitchType::gitlab)};
  NSHostingController<TrimmedWebView> host(trimmed);
  host.view();
  auto& engine = dynamic_cast<platform::HeadlessWebView&>(*trimmed.controller->webView());
  ASSERT_EQ(engine.loads.size(), 1U);
  EXPECT_EQ(engine.loads[0].url, getUrl(WebViewSwitchType::gitlab));
}

TEST_F(AlternativesTest, AHostWithASearchFieldMakesItOnce) {
  WebViewHelper helper;
  const auto view = helper.getWebUIView(WebViewSwitchType::jira);
  WebViewHostingController host(view);
  EXPECT_EQ(host.webView, view.webView);
  EXPECT_EQ(&host.searchField(), &host.searchField());
  EXPECT_EQ(host.searchField().frame.size, (platform::NSSize{600, 44}));
  EXPECT_EQ(host.searchField().menuTitle, "Search Menu");
}

TEST_F(AlternativesTest, AContentViewIsItsPage) {
  WebViewHelper helper;
  NSHostingController<ContentView> host(ContentView{helper.getWebUIView(WebViewSwitchType::jira)});
  EXPECT_EQ(platform::headlessTree(host).all<platform::HostedContent>().size(), 1U);
  EXPECT_FALSE(EnvironmentValues().isNewWindow);
}

struct Plain {
  platform::View body() const { return platform::Text("x"); }
};

TEST_F(AlternativesTest, AnimatorsPutAViewAboveAnotherAndTakeItAway) {
  NSHostingController<Plain> presenting{Plain{}};
  NSHostingController<Plain> presented{Plain{}};
  auto& below = platform::headlessTree(presenting);
  BasicPresentationAnimator basic;
  basic.animatePresentation(presented, presenting);
  ASSERT_EQ(below.subviews.size(), 1U);
  EXPECT_EQ(below.subviews[0].second, std::nullopt);
  basic.animateDismissal(presented, presenting);
  EXPECT_TRUE(below.subviews.empty());
  CustomAnimator custom;
  custom.animatePresentation(presented, presenting);
  EXPECT_TRUE(below.subviews[0].second.has_value());
  custom.animateDismissal(presented, presenting);
  EXPECT_EQ(below.subviews.size(), 1U);
}

}  // namespace
}  // namespace velkin
