#include "unit/AppFixture.h"

namespace velkin {
namespace {

using platform::NSSize;

class GeometryTest : public AppFixture {
 protected:
  GeometryTest() {
    settleIn();
    controller = &launch();
    leftClick();
  }
  void store(double width, double height) {
    defaults.set(width, UserDefault::webViewWidth);
    defaults.set(height, UserDefault::webViewHeight);
  }
  VelkinImpl* controller;
};

using Operation = void (VelkinImpl::*)();

struct Step {
  const char* name;
  Operation operation;
  bool isWidth;
  std::vector<double> path;
  const char* logLine;
};

class StepTest : public GeometryTest, public testing::WithParamInterface<Step> {};

TEST_P(StepTest, WalksTheWholeScaleAndStopsAtItsEnd) {
  const auto& step = GetParam();
  step.isWidth ? store(step.path.front(), 600) : store(600, step.path.front());
  for (std::size_t i = 1; i <= step.path.size(); ++i) {
    (controller->*step.operation)();
    const double expected = step.path[std::min(i, step.path.size() - 1)];
    EXPECT_EQ(step.isWidth ? defaults.webViewWidth() : defaults.webViewHeight(), expected);
    if (i < step.path.size()) {
      EXPECT_EQ(popover().contentSize(), (step.isWidth ? NSSize{expected, 600} : NSSize{600, expected}));
    }
  }
  EXPECT_TRUE(hasLogged(step.logLine));
}

INSTANTIATE_TEST_SUITE_P(Steps, StepTest,
                         testing::Values(Step{"Taller",
                                              &VelkinImpl::handleWindowTaller,
                                              false,
                                              {2160, 1240, 980, 600, 480},
                                              "handleWindowShorter!"},
                                         Step{"Shorter",
                                              &VelkinImpl::handleWindowShorter,
                                              false,
                                              {480, 600, 980, 1240, 2160},
                                              "handleWindowTaller!"},
                                         Step{"Wider",
                                              &VelkinImpl::handleWindowWider,
                                              true,
                                              {3840, 1420, 980, 600, 340},
                                              "handleWindowWider!"},
                                         Step{"Slimmer",
                                              &VelkinImpl::handleWindowSlimmer,
                                              true,
                                              {340, 600, 980, 1420, 3840},
                                              "handleWindowSlimmer!"}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(GeometryTest, AStepOfAnEarlierVersionMovesToItsNeighbours) {
  store(600, 740);
  controller->handleWindowShorter();
  EXPECT_EQ(defaults.webViewHeight(), 1240);
  store(600, 740);
  controller->handleWindowTaller();
  EXPECT_EQ(defaults.webViewHeight(), 600);
}

TEST_F(GeometryTest, FullSizeIsFullBothWays) {
  store(3840, 2160);
  EXPECT_TRUE(controller->getIsInFullScreenMode());
  store(3840, 980);
  EXPECT_FALSE(controller->getIsInFullScreenMode());
}

TEST_F(GeometryTest, TheToggleRemembersOneSize) {
  store(980, 480);
  controller->handleWindowFullScreen();
  EXPECT_EQ(popover().contentSize(), (NSSize{3840, 2160}));
  EXPECT_EQ(defaults.webViewFSToggleWidth(), 980);
  EXPECT_EQ(defaults.webViewFSToggleHeight(), 480);
  controller->handleWindowFullScreen();
  EXPECT_EQ(popover().contentSize(), (NSSize{980, 480}));
  EXPECT_EQ(defaults.webViewWidth(), 980);
}

TEST_F(GeometryTest, FullSizeReachedBySteppingGoesBackToTheRememberedOne) {
  store(3840, 2160);
  controller->handleWindowFullScreen();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 600}));
  controller->handleWindowFullScreen();
  EXPECT_EQ(defaults.webViewFSToggleHeight(), 600);
  EXPECT_TRUE(controller->getIsInFullScreenMode());
}

TEST_F(GeometryTest, AWidthThatIsFullAloneIsRememberedAsItIs) {
  store(3840, 980);
  controller->handleWindowFullScreen();
  EXPECT_EQ(defaults.webViewFSToggleWidth(), 3840);
  EXPECT_EQ(defaults.webViewFSToggleHeight(), 980);
}

TEST_F(GeometryTest, TheWayToFullSizeShowsAnOverlayInTheMiddle) {
  controller->handleWindowFullScreen();
  const auto content = popover().contentViewController();
  ASSERT_EQ(content->children().size(), 1U);
  auto& tree = dynamic_cast<platform::HeadlessHostingView&>(content->view());
  ASSERT_EQ(tree.subviews.size(), 1U);
  EXPECT_EQ(tree.subviews[0].second, (NSSize{128, 128}));
  controller->handleWindowFullScreen();
  EXPECT_EQ(content->children().size(), 1U);
}

TEST_F(GeometryTest, WithoutContentThereIsNoWayToFullSize) {
  popover().setContentViewController(nullptr);
  controller->handleWindowFullScreen();
  EXPECT_FALSE(controller->getIsInFullScreenMode());
}

TEST_F(GeometryTest, ASizeChangeHasTheOpenSidebarsBuiltAgain) {
  store(980, 600);
  controller->isFindingWebState->isJiring.set(true);
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*controller->hostedWebView);
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 2U);
  controller->handleWindowWider();
  desktop.queue.drain();
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 1U);
  EXPECT_TRUE(controller->isFindingWebState->isJiring.get());
}

TEST_F(GeometryTest, ZoomWalksItsScaleOnTheMainViewAndTheOpenSidebars) {
  controller->isFindingWebState->isJiring.set(true);
  const auto zooms = [&] {
    return std::vector<double>{defaults.webViewZoom(), controller->chatWebView.webView->pageZoom(),
                               controller->jiraWebView.webView->pageZoom(),
                               controller->bardWebView.webView->pageZoom()};
  };
  controller->handleZoomIn();
  EXPECT_EQ(zooms(), (std::vector<double>{1.2, 1.2, 1.2, 1.0}));
  controller->handleZoomIn();
  controller->handleZoomIn();
  EXPECT_EQ(zooms(), (std::vector<double>{1.45, 1.45, 1.45, 1.0}));
  controller->handleZoomActual();
  EXPECT_EQ(zooms(), (std::vector<double>{1.0, 1.0, 1.0, 1.0}));
  for (int i = 0; i < 4; ++i) controller->handleZoomOut();
  EXPECT_EQ(zooms(), (std::vector<double>{0.55, 0.55, 0.55, 1.0}));
}

TEST_F(GeometryTest, AZoomThatIsOnNoScaleDoesntStep) {
  defaults.set(1.15, UserDefault::webViewZoom);
  controller->handleZoomIn();
  controller->handleZoomOut();
  EXPECT_EQ(defaults.webViewZoom(), 1.15);
  controller->handleZoomActual();
  EXPECT_EQ(defaults.webViewZoom(), 1.0);
}

TEST_F(GeometryTest, PagesScrollAndGoBackAndForward) {
  auto& chat = engineOf(controller->chatWebView);
  controller->handlePageUp();
  controller->handlePageDown();
  controller->handlePageDown();
  EXPECT_EQ(chat.pagesUp, 1);
  EXPECT_EQ(chat.pagesDown, 2);
  chat.load(platform::URLRequest{*platform::URL::parse("https://a.test/")});
  controller->handleBack();
  EXPECT_EQ(*chat.url(), getUrl(WebViewSwitchType::chatgpt));
  controller->handleForward();
  EXPECT_EQ(chat.url()->absoluteString(), "https://a.test/");
}

TEST_F(GeometryTest, ReloadFromOriginGoesToTheConfiguredAddress) {
  auto& chat = engineOf(controller->chatWebView);
  chat.load(platform::URLRequest{*platform::URL::parse("https://a.test/deep")});
  defaults.set("https://mine.test/chat", UserDefault::chatUrl);
  controller->scriptingHelper->chatSubmitClicked = true;
  controller->handleReloadFromOrigin();
  EXPECT_EQ(chat.url()->absoluteString(), "https://mine.test/chat");
  EXPECT_FALSE(controller->scriptingHelper->chatSubmitClicked);
}

TEST_F(GeometryTest, ReloadFromOriginDoesNothingInTheOnboarding) {
  controller->switchWebViews(WebViewSwitchType::onboarding);
  const auto loads = engineOf(controller->chatWebView).loads.size();
  controller->handleReloadFromOrigin();
  EXPECT_EQ(engineOf(controller->chatWebView).loads.size(), loads);
}

}  // namespace
}  // namespace velkin
