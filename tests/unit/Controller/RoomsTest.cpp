#include "Controller/AuxiliaryPanels.h"
#include "Controller/Finding.h"
#include "Controller/PageCommands.h"
#include "Controller/SearchPanel.h"
#include "Controller/Sidebars.h"
#include "Controller/WindowGeometry.h"
#include "unit/Controller/RoomFixture.h"

namespace velkin {
namespace {

using enum WebViewSwitchType;

using ServicePagesTest = RoomFixture;

TEST_F(ServicePagesTest, EachWebViewHasAPageOfItsOwnAndEveryOtherViewChats) {
  for (const auto one : allWebViewSwitchTypes) {
    for (const auto other : allWebViewSwitchTypes) {
      const auto ownerOf = [](auto view) { return isWebView(view) ? view : chatgpt; };
      EXPECT_EQ(content.pages[one].webView == content.pages[other].webView, ownerOf(one) == ownerOf(other));
    }
  }
}

using PopoverContentTest = RoomFixture;

TEST_F(PopoverContentTest, KnowsWhatItHolds) {
  EXPECT_FALSE(content.isFindableView());
  EXPECT_FALSE(content.isFindableOrMarkdownView());
  show(jira);
  EXPECT_TRUE(content.isFindableView());
  EXPECT_EQ(content.popover->contentViewController(), content.hostedWebView);
  content.forgetHosts();
  EXPECT_FALSE(content.isFindableView());
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  EXPECT_TRUE(content.isFindableOrMarkdownView());
}

TEST_F(PopoverContentTest, GivesTheKeyboardOnlyToAPageOnShow) {
  content.giveKeyboardToMainView();
  EXPECT_FALSE(page(chatgpt).isFirstResponder);
  show(bard);
  EXPECT_TRUE(page(bard).isFirstResponder);
  page(bard).isFirstResponder = false;
  defaults.set(rawValue(markdown), UserDefault::lastVisibleWebView);
  content.giveKeyboardToMainView();
  EXPECT_FALSE(page(bard).isFirstResponder);
}

class SidebarsTest : public RoomFixture {
 protected:
  bool isOpen(WebViewSwitchType view) const { return content.sharedState->sidebarFlag(view)->get(); }
  Sidebars sidebars{content};
};

TEST_F(SidebarsTest, ToggleBesideAPageAndNeverTheMainViewItself) {
  show(jira);
  sidebars.toggle(bard);
  sidebars.toggle(jira);
  EXPECT_TRUE(isOpen(bard));
  EXPECT_FALSE(isOpen(jira));
  sidebars.toggle(bard);
  EXPECT_FALSE(isOpen(bard));
}

TEST_F(SidebarsTest, DontToggleWhereThereAreNone) {
  sidebars.toggle(bard);
  EXPECT_FALSE(isOpen(bard));
  content.show(views.releaseNotes());
  defaults.set(rawValue(releaseNotes), UserDefault::lastVisibleWebView);
  sidebars.toggle(bard);
  EXPECT_FALSE(isOpen(bard));
}

TEST_F(SidebarsTest, CloseAllSeven) {
  for (const auto view : {chatgpt, bard, bitbucket, gitlab, hemingway, jira, markdown}) sidebars.open(view);
  EXPECT_TRUE(content.sharedState->hasSidebars());
  sidebars.close();
  EXPECT_FALSE(content.sharedState->hasSidebars());
}

TEST_F(SidebarsTest, OpenNothingForAViewThatCantStandThere) {
  sidebars.open(std::nullopt);
  EXPECT_TRUE(log.empty());
  sidebars.open(search);
  EXPECT_FALSE(content.sharedState->hasSidebars());
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log.back().find("Error: Should not happen"), std::string::npos);
}

TEST_F(SidebarsTest, ResetTurnsWhatIsOpenOffAndOnAgain) {
  show(jira);
  sidebars.open(bard);
  int changes = 0;
  const auto watch = content.sharedState->subscribe([&] { ++changes; });
  sidebars.reset();
  EXPECT_EQ(changes, 2);
  EXPECT_TRUE(isOpen(bard));
}

TEST_F(SidebarsTest, TheOneThatOpensHasTheKeyboardAndTheMainViewGetsItBack) {
  defaults.set(980.0, UserDefault::webViewWidth);
  show(jira);
  page(jira).isFirstResponder = false;
  sidebars.toggle(bard);
  EXPECT_TRUE(page(bard).isFirstResponder);
  EXPECT_FALSE(page(jira).isFirstResponder);
  page(bard).isFirstResponder = false;
  sidebars.toggle(bard);
  EXPECT_TRUE(page(jira).isFirstResponder);
  EXPECT_FALSE(page(bard).isFirstResponder);
}

TEST_F(SidebarsTest, OneThatThereIsNoRoomForTakesNoKeyboard) {
  defaults.set(600.0, UserDefault::webViewWidth);
  defaults.set(600.0, UserDefault::webViewHeight);
  show(jira);
  sidebars.toggle(bard);
  EXPECT_TRUE(isOpen(bard));
  EXPECT_FALSE(page(bard).isFirstResponder);
}

TEST_F(SidebarsTest, ANewSizeMovesNoKeyboard) {
  defaults.set(980.0, UserDefault::webViewWidth);
  show(jira);
  sidebars.toggle(bard);
  page(jira).isFirstResponder = false;
  page(bard).isFirstResponder = false;
  sidebars.reset();
  EXPECT_FALSE(page(jira).isFirstResponder);
  EXPECT_FALSE(page(bard).isFirstResponder);
}

TEST_F(SidebarsTest, TheScratchpadsIsDrawnAtTheNewSizeToo) {
  defaults.set(980.0, UserDefault::webViewWidth);
  show(jira);
  sidebars.toggle(markdown);
  desktop.queue.drain();
  auto& tree = platform::headlessTree(*content.hostedWebView);
  const auto hasWidth = [&](double width) {
    return !tree.all([&](const auto& v) { return v.element().modifiers.frame.width == width; }).empty();
  };
  EXPECT_TRUE(hasWidth(980 * 0.15));
  defaults.set(1420.0, UserDefault::webViewWidth);
  sidebars.reset();
  desktop.queue.drain();
  EXPECT_TRUE(hasWidth(1420 * 0.15));
  EXPECT_FALSE(hasWidth(980 * 0.15));
}

TEST_F(SidebarsTest, ZoomTheOpenOnesAlone) {
  sidebars.open(gitlab);
  sidebars.setZoom(1.45);
  EXPECT_EQ(page(gitlab).pageZoom(), 1.45);
  EXPECT_EQ(page(bard).pageZoom(), 1.0);
}

class WindowGeometryTest : public RoomFixture {
 protected:
  void setSize(double width, double height) {
    defaults.set(width, UserDefault::webViewWidth);
    defaults.set(height, UserDefault::webViewHeight);
  }
  Sidebars sidebars{content};
  WindowGeometry geometry{content, sidebars};
};

TEST_F(WindowGeometryTest, StepsAlongTheScaleAndStopsAtItsEnds) {
  setSize(600, 480);
  geometry.stepHeight(-1, "line");
  EXPECT_EQ(defaults.webViewHeight(), 480);
  geometry.stepHeight(+1, "line");
  EXPECT_EQ(defaults.webViewHeight(), 600);
  EXPECT_EQ(content.popover->contentSize().height, 600);
  setSize(3840, 600);
  geometry.stepWidth(+1, "line");
  EXPECT_EQ(defaults.webViewWidth(), 3840);
  geometry.stepWidth(-1, "line");
  EXPECT_EQ(defaults.webViewWidth(), 1420);
  EXPECT_EQ(content.popover->contentSize().width, 1420);
}

TEST_F(WindowGeometryTest, GoesToTheFullSizeAndBack) {
  show(chatgpt);
  setSize(980, 740);
  geometry.toggleFullScreen();
  EXPECT_TRUE(geometry.isFullScreen());
  EXPECT_EQ(defaults.webViewFSToggleWidth(), 980);
  // A step of earlier versions is kept as the step that it reads as.
  EXPECT_EQ(defaults.webViewFSToggleHeight(), 980);
  geometry.toggleFullScreen();
  EXPECT_EQ(defaults.webViewWidth(), 980);
  EXPECT_EQ(defaults.webViewHeight(), 980);
}

TEST_F(WindowGeometryTest, HasNoFullSizeWithoutContent) {
  geometry.toggleFullScreen();
  EXPECT_FALSE(geometry.isFullScreen());
}

TEST_F(WindowGeometryTest, ZoomsTheMainPageAndTheOpenSidebars) {
  show(jira);
  sidebars.open(bard);
  geometry.stepZoom(-1, "line");
  for (const auto view : {jira, bard}) EXPECT_EQ(page(view).pageZoom(), 1.2);
  EXPECT_EQ(page(gitlab).pageZoom(), 1.0);
  EXPECT_EQ(defaults.webViewZoom(), 1.2);
  // A zoom that stands on no scale has no neighbour.
  defaults.set(1.1, UserDefault::webViewZoom);
  geometry.stepZoom(+1, "line");
  EXPECT_EQ(defaults.webViewZoom(), 1.1);
}

class FindingTest : public RoomFixture {
 protected:
  bool isSearching() const { return content.sharedState->isSearching.get(); }
  Finding finding{content};
};

TEST_F(FindingTest, NeedsAPage) {
  finding.toggle();
  EXPECT_FALSE(isSearching());
  show(chatgpt);
  finding.toggle();
  EXPECT_TRUE(isSearching());
  showPopover();
  EXPECT_TRUE(finding.end());
  EXPECT_FALSE(isSearching());
  EXPECT_FALSE(finding.end());
}

TEST_F(FindingTest, AFindBarThatIsntOnShowHoldsNothingBack) {
  content.sharedState->isSearching.set(true);
  EXPECT_FALSE(finding.end());
  EXPECT_FALSE(isSearching());
}

class PageCommandsTest : public RoomFixture {
 protected:
  PageCommands commands{content};
};

TEST_F(PageCommandsTest, ActOnTheMainPage) {
  show(jira);
  commands.scrollPageUp();
  commands.scrollPageDown();
  commands.scrollPageDown();
  EXPECT_EQ(page(jira).pagesUp, 1);
  EXPECT_EQ(page(jira).pagesDown, 2);
  commands.reload();
  EXPECT_EQ(page(jira).reloads, 0) << "the menu closes first";
  desktop.queue.drain();
  EXPECT_EQ(page(jira).reloads, 1);
}

TEST_F(PageCommandsTest, AReloadMeansANewPageForTheScripts) {
  show(chatgpt);
  content.scripting->chatSubmitClicked = true;
  commands.reload();
  desktop.queue.drain();
  EXPECT_FALSE(content.scripting->chatSubmitClicked);
}

TEST_F(PageCommandsTest, TheOriginIsTheConfiguredAddress) {
  defaults.set("https://issues.example/", UserDefault::jiraUrl);
  show(jira);
  commands.reloadFromOrigin();
  ASSERT_FALSE(page(jira).loads.empty());
  EXPECT_EQ(page(jira).loads.back().url.absoluteString(), "https://issues.example/");
  const auto before = page(jira).loads.size();
  defaults.set(rawValue(onboarding), UserDefault::lastVisibleWebView);
  commands.reloadFromOrigin();
  EXPECT_EQ(page(jira).loads.size(), before);
}

class AuxiliaryPanelsTest : public RoomFixture {
 protected:
  AuxiliaryPanels panels{views, nullptr};
};

TEST_F(AuxiliaryPanelsTest, EachStandsWhereItsRowSays) {
  using enum AuxiliaryPanels::Kind;
  struct Case {
    AuxiliaryPanels::Kind kind;
    const char* title;
    double x;
    double y;
  };
  for (const auto& expected : {Case{about, "Velkin - About", 960 - 192, 540 - 360},
                               Case{shortcuts, "Velkin - Shortcuts", 960 - 240, 540 - 400},
                               Case{appearance, "Velkin - Appearance", 960 - 240, 540 - 400}}) {
    panels.open(expected.kind);
    const auto& panel = panels.panel(expected.kind);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(panel.title(), expected.title);
    EXPECT_EQ(panel.frame().origin.x, expected.x);
    EXPECT_EQ(panel.frame().origin.y, expected.y);
  }
}

TEST_F(AuxiliaryPanelsTest, AVisibleOneStays) {
  using enum AuxiliaryPanels::Kind;
  panels.open(about);
  const auto* panel = &panels.panel(about);
  panels.open(about);
  EXPECT_EQ(&panels.panel(about), panel);
  EXPECT_EQ(panels.content(about), nullptr) << "its record of the content is let go";
}

TEST_F(AuxiliaryPanelsTest, WithoutAScreenNoneOpens) {
  desktop.attachedScreens.clear();
  panels.open(AuxiliaryPanels::Kind::about);
  EXPECT_FALSE(panels.panel(AuxiliaryPanels::Kind::about).isVisible());
}

class SearchPanelTest : public RoomFixture {
 protected:
  SearchPanel searchPanel{views};
};

TEST_F(SearchPanelTest, OpensInTheMiddleAboveTheCentreAndClosesOnce) {
  EXPECT_FALSE(searchPanel.close());
  ASSERT_TRUE(searchPanel.open());
  EXPECT_EQ(searchPanel.panel()->frame().origin.x, 960 - 360);
  EXPECT_EQ(searchPanel.panel()->frame().origin.y, 540 * 1.3 - 100);
  EXPECT_TRUE(searchPanel.close());
  EXPECT_EQ(searchPanel.panel(), nullptr);
}

TEST_F(SearchPanelTest, TheWindowManagersCloseIsItsOwn) {
  ASSERT_TRUE(searchPanel.open());
  // As a frame's button or Alt+F4 does it, past this room.
  searchPanel.panel()->close();
  EXPECT_EQ(searchPanel.panel(), nullptr);
  EXPECT_FALSE(searchPanel.close());
  desktop.queue.drain();
  EXPECT_TRUE(searchPanel.open());
  EXPECT_TRUE(searchPanel.panel()->isVisible());
}

TEST_F(SearchPanelTest, NeedsAScreen) {
  desktop.attachedScreens.clear();
  EXPECT_FALSE(searchPanel.open());
  EXPECT_EQ(searchPanel.panel(), nullptr);
}

}  // namespace
}  // namespace velkin
