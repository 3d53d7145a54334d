#include "Platform/NSHostingController.h"
#include "WebView/FindableWebView.h"
#include "WebView/WebView.h"
#include "WebView/WebViewHelper.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using platform::NSHostingController;
using platform::NSRect;
using enum WebViewSwitchType;

class WebViewTest : public AppFixture {
 protected:
  WebViewHelper helper;
};

TEST_F(WebViewTest, AViewThatNeverLoadedLoadsInALaterTurn) {
  const auto view = helper.getWebUIView(jira);
  NSHostingController<WebView> host(view);
  host.view();
  EXPECT_TRUE(engineOf(view).loads.empty());
  desktop.queue.drain();
  ASSERT_EQ(engineOf(view).loads.size(), 1U);
  EXPECT_EQ(engineOf(view).loads[0].url, getUrl(jira));
  EXPECT_EQ(engineOf(view).loads[0].timeoutInterval, 60);
}

TEST_F(WebViewTest, SeveralHostsInARowLoadOnce) {
  const auto view = helper.getWebUIView(jira);
  NSHostingController<WebView> first(view);
  NSHostingController<WebView> second(view);
  first.view();
  second.view();
  desktop.queue.drain();
  EXPECT_EQ(engineOf(view).loads.size(), 1U);
}

TEST_F(WebViewTest, ANewHostKeepsThePageAndLoadsNothing) {
  const auto view = helper.getWebUIView(jira);
  NSHostingController<WebView>(view).view();
  desktop.queue.drain();
  NSHostingController<WebView>(view).view();
  desktop.queue.drain();
  EXPECT_EQ(engineOf(view).loads.size(), 1U);
}

TEST_F(WebViewTest, ANewHostAppliesTheStoredZoom) {
  const auto view = helper.getWebUIView(jira);
  NSHostingController<WebView>(view).view();
  EXPECT_EQ(view.webView->pageZoom(), 1.0);
  defaults.set(1.2, UserDefault::webViewZoom);
  NSHostingController<WebView>(view).view();
  EXPECT_EQ(view.webView->pageZoom(), 1.2);
}

TEST_F(WebViewTest, AnUpdateLogsBothAddresses) {
  const auto view = helper.getWebUIView(gitlab);
  view.updateNSView(*view.webView);
  EXPECT_TRUE(hasLogged("Q$: WebView.updateNSView(_:context:)  nsView.url=nil, url=" +
                        getUrl(gitlab).absoluteString()));
}

TEST_F(WebViewTest, TheChatServicesSeeTheDesktopBrowserAndOthersTheEnginesOwn) {
  const std::string desktopBrowser =
      "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_11_3) AppleWebKit/605.1.15 (KHTML, like Gecko) "
      "Version/14.1.1 "
      "Safari/605.1.15";
  EXPECT_EQ(helper.getWebUIView(chatgpt).webView->customUserAgent(), desktopBrowser);
  EXPECT_EQ(helper.getWebUIView(bard).webView->customUserAgent(), desktopBrowser);
  for (const auto type : {bitbucket, gitlab, hemingway, jira}) {
    EXPECT_EQ(helper.getWebUIView(type).webView->customUserAgent(), "");
  }
}

TEST_F(WebViewTest, TheConfigurationIsScriptsOnAndMobileContent) {
  const auto config = helper.getConfig();
  EXPECT_TRUE(config.defaultWebpagePreferences.allowsContentJavaScript);
  EXPECT_EQ(static_cast<int>(config.defaultWebpagePreferences.preferredContentMode), 1);
  EXPECT_TRUE(config.usesPersistentDataStore);
}

TEST_F(WebViewTest, EveryWebViewAllowsItsThreeInteractions) {
  const auto view = helper.getWebUIView(gitlab);
  EXPECT_TRUE(view.webView->allowsMagnification);
  EXPECT_TRUE(view.webView->allowsLinkPreview);
  EXPECT_TRUE(view.webView->allowsBackForwardNavigationGestures());
}

TEST_F(WebViewTest, FramesHaveTheSizeOfTheFirstRead) {
  defaults.set(980.0, UserDefault::webViewWidth);
  EXPECT_EQ(helper.getWebUIView(gitlab).webView->frame(), (NSRect{{0, 0}, {980, 600}}));
  defaults.set(340.0, UserDefault::webViewWidth);
  EXPECT_EQ(helper.getWebUIView(gitlab).webView->frame(), (NSRect{{0, 0}, {980, 600}}));
}

TEST_F(WebViewTest, OneOfTheFactoriesBeginsTheLoadAndTheOthersDont) {
  const auto loading = helper.getWKWebView(gitlab);
  EXPECT_EQ(desktop.webViews.back()->loads.size(), 1U);
  EXPECT_TRUE(engineOf(helper.getWebUIView(gitlab)).loads.empty());
  const auto wrapped = helper.getWrappedWebView(gitlab);
  EXPECT_TRUE(dynamic_cast<platform::HeadlessWebView&>(*wrapped.webView).loads.empty());
}

TEST_F(WebViewTest, AWrappedViewLoadsAtTheZoomOfTheSettingsAndMarksTheSubmitButtonAfterwards) {
  defaults.set(0.8, UserDefault::webViewZoom);
  const auto wrapped = helper.getWrappedWebView(chatgpt);
  auto& engine = dynamic_cast<platform::HeadlessWebView&>(*wrapped.webView);
  NSHostingController<WrappedWebView> host(wrapped);
  host.view();
  EXPECT_EQ(engine.loads.size(), 1U);
  EXPECT_EQ(engine.pageZoom(), 0.8);
  engine.scriptError = platform::NSError{"WKErrorDomain", 4, "no form"};
  engine.navigationDelegate->didFinish(engine);
  ASSERT_EQ(engine.scripts.size(), 1U);
  EXPECT_NE(engine.scripts[0].find("submit-button"), std::string::npos);
  EXPECT_TRUE(hasLogged("Error evaluating JavaScript: no form"));
}

TEST_F(WebViewTest, TheWrappersConfigurationTurnsOnTheInspectorAndIsMadeOnce) {
  WrappedWebViewController controller;
  EXPECT_TRUE(controller.config().preferences.developerExtrasEnabled);
  EXPECT_EQ(&controller.config(), &controller.config());
}

class FindableWebViewTest : public WebViewTest {
 protected:
  FindableWebView container() {
    const auto of = [&](WebViewSwitchType type) { return helper.getWebUIView(type); };
    const auto main = of(chatgpt);
    return {main, of(bard), of(bitbucket), main, of(gitlab), of(hemingway), of(jira), state};
  }
  void setSize(double width, double height) {
    defaults.set(width, UserDefault::webViewWidth);
    defaults.set(height, UserDefault::webViewHeight);
  }
  /// The frames of what hosts a sidebar's page, in order.
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
  bool isHorizontal(const platform::HeadlessHostingView& tree) {
    for (const auto* stack : tree.all<platform::StackContent>()) {
      if (std::get<platform::StackContent>(stack->element().content).axis == platform::Axis::horizontal)
        return true;
    }
    return false;
  }

  std::shared_ptr<SharedState> state = std::make_shared<SharedState>();
};

TEST_F(FindableWebViewTest, WithoutSidebarsThereIsTheMainViewAlone) {
  setSize(980, 980);
  NSHostingController host(container());
  EXPECT_EQ(platform::headlessTree(host).all<platform::HostedContent>().size(), 1U);
}

TEST_F(FindableWebViewTest, AWideWindowHasItsSidebarsBesideTheMainView) {
  for (const double height : {600.0, 980.0}) {
    setSize(980, height);
    state->isJiring.set(true);
    NSHostingController host(container());
    EXPECT_TRUE(isHorizontal(platform::headlessTree(host)));
    EXPECT_EQ(platform::headlessTree(host).all<platform::HostedContent>().size(), 2U);
  }
}

TEST_F(FindableWebViewTest, ATallOneThatIsntWideHasThemBelow) {
  setSize(600, 980);
  state->isJiring.set(true);
  NSHostingController host(container());
  EXPECT_FALSE(isHorizontal(platform::headlessTree(host)));
  EXPECT_EQ(platform::headlessTree(host).all<platform::HostedContent>().size(), 2U);
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
  }
}

TEST_F(FindableWebViewTest, DividersStandWhereTheyAlwaysStand) {
  setSize(980, 600);
  const auto dividers = [&] {
    NSHostingController host(container());
    return platform::headlessTree(host).all<platform::DividerContent>().size();
  };
  EXPECT_EQ(dividers(), 0U);
  state->isJiring.set(true);
  EXPECT_EQ(dividers(), 1U);
  state->isBarding.set(true);
  EXPECT_EQ(dividers(), 2U);
}

}  // namespace
}  // namespace velkin
