#include "Helpers/ViewAddresses.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "unit/AppFixture.h"

#include <algorithm>

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
  controller->isFindingWebState()->isJiring.set(true);
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*controller->hostedWebView());
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 2U);
  controller->handleWindowWider();
  desktop.queue.drain();
  EXPECT_EQ(tree.all<platform::HostedContent>().size(), 1U);
  EXPECT_TRUE(controller->isFindingWebState()->isJiring.get());
}

TEST_F(GeometryTest, ZoomWalksItsScaleOnTheMainViewAndTheOpenSidebars) {
  controller->isFindingWebState()->isJiring.set(true);
  const auto zooms = [&] {
    return std::vector<double>{defaults.webViewZoom(), controller->chatWebView().webView->pageZoom(),
                               controller->jiraWebView().webView->pageZoom(),
                               controller->bardWebView().webView->pageZoom()};
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
  auto& chat = engineOf(controller->chatWebView());
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
  auto& chat = engineOf(controller->chatWebView());
  chat.load(platform::URLRequest{*platform::URL::parse("https://a.test/deep")});
  defaults.set("https://mine.test/chat", UserDefault::chatUrl);
  controller->scriptingHelper()->chatSubmitClicked = true;
  controller->handleReloadFromOrigin();
  EXPECT_EQ(chat.url()->absoluteString(), "https://mine.test/chat");
  EXPECT_FALSE(controller->scriptingHelper()->chatSubmitClicked);
}

TEST_F(GeometryTest, ReloadFromOriginDoesNothingInTheOnboarding) {
  controller->switchWebViews(WebViewSwitchType::onboarding);
  const auto loads = engineOf(controller->chatWebView()).loads.size();
  controller->handleReloadFromOrigin();
  EXPECT_EQ(engineOf(controller->chatWebView()).loads.size(), loads);
}

TEST_F(GeometryTest, AStepStoresItsOwnDimensionAndTakesTheOtherAsItIsStored) {
  store(460, 740);
  const auto before = desktop.userDefaults.changedKeys().size();
  controller->handleWindowShorter();
  EXPECT_EQ(popover().contentSize(), (NSSize{460, 1240}));
  EXPECT_EQ(defaults.webViewWidth(), 460);
  controller->handleWindowSlimmer();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 1240}));
  const auto keys = desktop.userDefaults.changedKeys();
  EXPECT_EQ(std::vector<std::string>(keys.begin() + static_cast<std::ptrdiff_t>(before), keys.end()),
            (std::vector<std::string>{"viewHeight", "viewWidth"}));
}

TEST_F(GeometryTest, AStepLeavesAnEarlierSizeOfTheOtherDimensionAsItIs) {
  store(600, 740);
  controller->handleWindowSlimmer();
  EXPECT_EQ(popover().contentSize(), (NSSize{980, 740}));
  store(460, 600);
  controller->handleWindowShorter();
  EXPECT_EQ(popover().contentSize(), (NSSize{460, 980}));
}

TEST_F(GeometryTest, AnEarlierWidthMovesToTheNeighboursOfItsStep) {
  const std::vector<std::pair<double, double>> wider = {{460, 600}, {1600, 3840}, {1860, 3840}, {2200, 3840}};
  for (const auto& [stored, next] : wider) {
    store(stored, 600);
    controller->handleWindowSlimmer();
    EXPECT_EQ(defaults.webViewWidth(), next) << stored;
  }
  store(2200, 600);
  controller->handleWindowWider();
  EXPECT_EQ(defaults.webViewWidth(), 980);
  store(777, 777);
  controller->handleWindowWider();
  controller->handleWindowTaller();
  EXPECT_EQ(popover().contentSize(), (NSSize{340, 480}));
}

TEST_F(GeometryTest, AtTheEndsOfTheScalesNothingIsStoredAndNothingMoves) {
  controller->isFindingWebState()->isJiring.set(true);
  const auto nothingHappens = [&](Operation operation) {
    popover().setContentSize({1, 1});
    int changes = 0;
    const auto subscription = controller->isFindingWebState()->isJiring.subscribe([&] { ++changes; });
    const auto keys = desktop.userDefaults.changedKeys();
    (controller->*operation)();
    EXPECT_EQ(popover().contentSize(), (NSSize{1, 1}));
    EXPECT_EQ(desktop.userDefaults.changedKeys(), keys);
    EXPECT_EQ(changes, 0);
  };
  store(3840, 2160);
  nothingHappens(&VelkinImpl::handleWindowShorter);
  nothingHappens(&VelkinImpl::handleWindowSlimmer);
  store(340, 480);
  nothingHappens(&VelkinImpl::handleWindowTaller);
  nothingHappens(&VelkinImpl::handleWindowWider);
  defaults.set(1.45, UserDefault::webViewZoom);
  nothingHappens(&VelkinImpl::handleZoomIn);
  defaults.set(0.55, UserDefault::webViewZoom);
  nothingHappens(&VelkinImpl::handleZoomOut);
  defaults.set(1.3, UserDefault::webViewZoom);
  nothingHappens(&VelkinImpl::handleZoomIn);
  nothingHappens(&VelkinImpl::handleZoomOut);
}

TEST_F(GeometryTest, ANewSizeIsStoredBeforeTheSidebarsAreBuiltForIt) {
  controller->isFindingWebState()->isJiring.set(true);
  double stored = 0;
  const auto subscription =
      controller->isFindingWebState()->isJiring.subscribe([&] { stored = defaults.webViewWidth(); });
  controller->handleWindowSlimmer();
  EXPECT_EQ(stored, 980);
  controller->handleWindowFullScreen();
  EXPECT_EQ(stored, 3840);
  controller->handleWindowFullScreen();
  EXPECT_EQ(stored, 980);
}

TEST_F(GeometryTest, TheFourSizesOfTheToggleAreStoredInOneGo) {
  store(980, 480);
  const int before = desktop.userDefaults.timesStored();
  controller->handleWindowFullScreen();
  EXPECT_EQ(desktop.userDefaults.timesStored(), before + 1);
  controller->handleWindowFullScreen();
  EXPECT_EQ(desktop.userDefaults.timesStored(), before + 2);
}

TEST_F(GeometryTest, ASwitchStoresInOneGo) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  controller->switchWebViews(WebViewSwitchType::jira);
  const int before = desktop.userDefaults.timesStored();
  controller->switchWebViews(WebViewSwitchType::chatgpt);
  EXPECT_EQ(desktop.userDefaults.timesStored(), before + 1);
}

TEST_F(GeometryTest, FullSizeGoesBackToTheStepsOfWhatIsRemembered) {
  store(3840, 2160);
  defaults.set(460.0, UserDefault::webViewFSToggleWidth);
  defaults.set(740.0, UserDefault::webViewFSToggleHeight);
  controller->handleWindowFullScreen();
  EXPECT_EQ(defaults.webViewWidth(), 340);
  EXPECT_EQ(defaults.webViewHeight(), 980);
  EXPECT_EQ(popover().contentSize(), (NSSize{340, 980}));
}

TEST_F(GeometryTest, TheWayToFullSizeRemembersStepsOfTheScale) {
  store(1600, 740);
  controller->handleWindowFullScreen();
  EXPECT_EQ(defaults.webViewFSToggleWidth(), 1420);
  EXPECT_EQ(defaults.webViewFSToggleHeight(), 980);
}

TEST_F(GeometryTest, WithoutContentNothingOfTheToggleHappens) {
  store(980, 480);
  popover().setContentViewController(nullptr);
  const auto keys = desktop.userDefaults.changedKeys();
  const auto size = popover().contentSize();
  controller->handleWindowFullScreen();
  EXPECT_EQ(desktop.userDefaults.changedKeys(), keys);
  EXPECT_EQ(popover().contentSize(), size);
  store(3840, 2160);
  controller->handleWindowFullScreen();
  EXPECT_EQ(popover().contentSize(), (NSSize{600, 600})) << "the way back needs no content";
}

TEST_F(GeometryTest, TheWayBackShowsNoOverlay) {
  store(3840, 2160);
  controller->handleWindowFullScreen();
  EXPECT_TRUE(popover().contentViewController()->children().empty());
}

TEST_F(GeometryTest, TheOverlayShowsTheSignForExpanding) {
  controller->handleWindowFullScreen();
  const auto child = popover().contentViewController()->children().at(0);
  const auto& tree = dynamic_cast<platform::HeadlessHostingView&>(child->view());
  const auto images = tree.all<platform::ImageContent>();
  ASSERT_EQ(images.size(), 1U);
  EXPECT_EQ(std::get<platform::ImageContent>(images[0]->element().content).name,
            "arrow.up.left.and.arrow.down.right");
  EXPECT_EQ(tree.roots().at(0)->element().modifiers.cornerRadius, 10);
}

TEST_F(GeometryTest, AnUpdateOfTheSizeTakesAnySizeAndStoresNone) {
  const auto keys = desktop.userDefaults.changedKeys();
  controller->updateWebViewWindowSize(9000, 7);
  EXPECT_EQ(popover().contentSize(), (NSSize{9000, 7}));
  EXPECT_EQ(desktop.userDefaults.changedKeys(), keys);
}

TEST_F(GeometryTest, EachOpenSidebarAndNoOtherTakesTheNewZoom) {
  auto& state = *controller->isFindingWebState();
  const std::vector<std::pair<platform::Published<bool>*, const WebView*>> sidebars = {
      {&state.isChatting, &controller->chatWebView()},
      {&state.isGitLabing, &controller->gitlabWebView()},
      {&state.isJiring, &controller->jiraWebView()},
      {&state.isBarding, &controller->bardWebView()},
      {&state.isBitBucketing, &controller->bitbucketWebView()},
      {&state.isHemingwaying, &controller->hemingwayWebView()}};
  defaults.set(true, UserDefault::hemingwayEnabled);
  for (const auto& [flag, view] : sidebars) {
    for (const auto& [other, page] : sidebars) {
      other->set(other == flag);
      page->webView->setPageZoom(0.5);
    }
    controller->updateSideBarZoomLevel(0.8);
    for (const auto& [other, page] : sidebars) {
      EXPECT_EQ(page->webView->pageZoom(), other == flag ? 0.8 : 0.5);
    }
  }
  controller->updateCurrentWebViewZoomLevel(1.2);
  EXPECT_EQ(controller->chatWebView().webView->pageZoom(), 1.2);
}

TEST_F(GeometryTest, ZoomsAreLogged) {
  controller->handleZoomIn();
  EXPECT_EQ(log.back(), "handleZoomIn!");
  controller->handleZoomOut();
  EXPECT_EQ(log.back(), "handleZoomOut!");
  controller->handleZoomActual();
  EXPECT_EQ(log.back(), "handleZoomActual!");
  controller->handlePageUp();
  EXPECT_EQ(log.back(), "handlePageUp!");
  controller->handlePageDown();
  EXPECT_EQ(log.back(), "handlePageDown!");
}

TEST_F(GeometryTest, TheCurrentPageIsTheOneThatScrollsAndReloadsFromItsOwnAddress) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  controller->switchWebViews(WebViewSwitchType::jira);
  desktop.queue.drain();
  auto& jira = engineOf(controller->jiraWebView());
  const auto chatLoads = engineOf(controller->chatWebView()).loads.size();
  controller->handlePageUp();
  controller->handlePageDown();
  EXPECT_EQ(jira.pagesUp, 1);
  EXPECT_EQ(jira.pagesDown, 1);
  defaults.set("https://mine.test/jira", UserDefault::jiraUrl);
  controller->scriptingHelper()->chatSubmitClicked = true;
  controller->handleReloadFromOrigin();
  EXPECT_EQ(jira.loads.back().url.absoluteString(), "https://mine.test/jira");
  EXPECT_EQ(jira.loads.back().timeoutInterval, 60);
  EXPECT_TRUE(controller->scriptingHelper()->chatSubmitClicked) << "it was another page than chat's";
  EXPECT_EQ(engineOf(controller->chatWebView()).loads.size(), chatLoads);
  EXPECT_TRUE(hasLogged("Reload From Origin click!"));
  controller->handleBack();
  EXPECT_EQ(*jira.url(), jira.loads.front().url);
  controller->handleForward();
  EXPECT_EQ(jira.url()->absoluteString(), "https://mine.test/jira");
}

}  // namespace
}  // namespace velkin
