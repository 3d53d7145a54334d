#include "Appearance/AppearanceUIView.h"
#include "Appearance/DesktopUIView.h"
#include "Platform/Headless/HeadlessViewTree.h"
#include "unit/AppFixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velkin {
namespace {

using platform::HeadlessView;

class AppearanceTest : public AppFixture {
 protected:
  AppearanceTest() { settleIn(); }

  void open() {
    controller = &launch();
    leftClick();
    desktop.queue.drain();
    controller->appearanceClicked();
    desktop.queue.drain();
  }
  platform::HeadlessHostingView& tree() {
    return platform::headlessTree(*controller->appearanceHostingController());
  }
  HeadlessView& picker(std::string_view title) {
    for (auto* view : tree().all<platform::PickerContent>()) {
      if (std::get<platform::PickerContent>(view->element().content).title == title) return *view;
    }
    throw std::runtime_error("no picker " + std::string(title));
  }
  int selected(std::string_view title) {
    return std::get<platform::PickerContent>(picker(title).element().content).selection.get();
  }
  void choose(std::string_view title, int option) {
    picker(title).select(option);
    desktop.queue.drain();
  }
  bool hasPreview(std::string_view sizes) {
    const auto label = "Preview: " + std::string(sizes);
    return !tree()
                .all([&](const HeadlessView& view) { return view.element().modifiers.label == label; })
                .empty();
  }
  /// The samples' engines.
  std::vector<platform::HeadlessWebView*> samples() {
    std::vector<platform::HeadlessWebView*> found;
    for (auto* view : desktop.webViews) {
      if (view->configuration().processPool) found.push_back(view);
    }
    return found;
  }

  VelkinImpl* controller = nullptr;
};

TEST_F(AppearanceTest, ShowsWhatIsStored) {
  defaults.set(1600.0, UserDefault::webViewWidth);
  defaults.set(740.0, UserDefault::webViewHeight);
  defaults.set(0.6, UserDefault::webViewZoom);
  open();
  EXPECT_EQ(selected("Width:"), 3);
  EXPECT_EQ(selected("Height:"), 2);
  EXPECT_EQ(selected("Font Size"), 4);
  EXPECT_TRUE(hasPreview("Broad by Tall"));
  for (const auto* text : {"Window Size", "Width:", "Height:", "SideBar", "Toolbar",
                           "\"Full\" preview sizes may not be accurate",
                           "Using \"Smaller\" may result in side bar being visible"})
    EXPECT_TRUE(tree().showsText(text)) << text;
}

TEST_F(AppearanceTest, AZoomThatIsNotOnTheTableShowsAsDefault) {
  defaults.set(1.07, UserDefault::webViewZoom);
  open();
  EXPECT_EQ(selected("Font Size"), 2);
}

TEST_F(AppearanceTest, EveryWidthAndHeightIsStoredAndTheWindowTakesIt) {
  open();
  for (std::size_t i = 0; i < allAppearanceWidths.size(); ++i) {
    const auto width = rawValue(allAppearanceWidths[i]);
    choose("Width:", static_cast<int>(i));
    EXPECT_EQ(defaults.webViewWidth(), width);
    EXPECT_EQ(popover().contentSize().width, width);
    for (std::size_t j = 0; j < allAppearanceHeights.size(); ++j) {
      const auto height = rawValue(allAppearanceHeights[j]);
      choose("Height:", static_cast<int>(j));
      EXPECT_EQ(defaults.webViewHeight(), height);
      EXPECT_EQ(popover().contentSize(), (platform::NSSize{width, height}));
      EXPECT_TRUE(hasPreview(std::string(stringValue(allAppearanceWidths[i])) + " by " +
                             std::string(stringValue(allAppearanceHeights[j]))));
    }
  }
}

TEST_F(AppearanceTest, EveryZoomIsStoredAndThePageFollows) {
  open();
  for (std::size_t i = allAppearanceFontSizes.size(); i-- > 0;) {
    const auto zoom = rawValue(allAppearanceFontSizes[i]);
    choose("Font Size", static_cast<int>(i));
    EXPECT_EQ(defaults.webViewZoom(), zoom);
    EXPECT_EQ(controller->currentWebView().webView->pageZoom(), zoom);
    EXPECT_EQ(selected("Font Size"), static_cast<int>(i));
  }
}

TEST_F(AppearanceTest, FollowsASizeAndAZoomThatAreChangedByAKey) {
  open();
  EXPECT_EQ(selected("Width:"), 1);
  EXPECT_EQ(selected("Height:"), 1);
  // The keys' names say the opposite of what they do.
  controller->handleWindowWider();
  desktop.queue.drain();
  EXPECT_EQ(selected("Width:"), 0);
  controller->handleWindowShorter();
  desktop.queue.drain();
  EXPECT_EQ(selected("Height:"), 2);
  EXPECT_TRUE(hasPreview("Slim by Tall"));
  controller->handleZoomIn();
  desktop.queue.drain();
  EXPECT_EQ(selected("Font Size"), 1);
  choose("Width:", 2);
  EXPECT_EQ(selected("Width:"), 2);
  EXPECT_TRUE(hasPreview("Wide by Tall"));
}

TEST_F(AppearanceTest, TheZoomIsThatOfThePageThatHasTheMainPlaceByThen) {
  defaults.set(true, UserDefault::hemingwayEnabled);
  open();
  controller->switchWebViews(WebViewSwitchType::jira);
  desktop.queue.drain();
  ASSERT_EQ(controller->currentWebView().webView, controller->jiraWebView().webView);
  choose("Font Size", 3);
  EXPECT_EQ(controller->jiraWebView().webView->pageZoom(), 0.8);
}

TEST_F(AppearanceTest, FiveSamplesShareAProcessAndGoWithThePanel) {
  open();
  const auto shown = samples();
  ASSERT_EQ(shown.size(), 5U);
  const std::weak_ptr pool = shown.front()->configuration().processPool;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    EXPECT_EQ(shown[i]->configuration().processPool, pool.lock());
    EXPECT_EQ(shown[i]->pageZoom(), rawValue(allAppearanceFontSizes[i]));
    EXPECT_TRUE(shown[i]->configuration().isIsolated);
  }
  EXPECT_TRUE(ZoomedTextWebViewController::samplePage().starts_with("<html><body>"));
  EXPECT_TRUE(ZoomedTextWebViewController::samplePage().ends_with("</body></html>"));
  controller->appearancePanel().close();
  desktop.queue.drain();
  EXPECT_TRUE(pool.expired());
}

TEST_F(AppearanceTest, ASampleChoosesItsStep) {
  open();
  // In the order of the scale, behind the icon.
  const auto taps = tree().all([](const HeadlessView& view) {
    return view.element().modifiers.onTap && view.element().modifiers.frame.width == 64.0 &&
           view.element().modifiers.label.empty();
  });
  ASSERT_EQ(taps.size(), 5U);
  taps[1]->press();
  desktop.queue.drain();
  EXPECT_EQ(defaults.webViewZoom(), 1.2);
}

TEST_F(AppearanceTest, TheButtonsLeadToThePages) {
  for (const auto& [title, view] : {std::pair{"Release Notes", WebViewSwitchType::releaseNotes},
                                    std::pair{"Onboarding", WebViewSwitchType::onboarding},
                                    std::pair{"URLs & Shortcuts", WebViewSwitchType::editUrls}}) {
    open();
    ASSERT_NE(tree().control(title), nullptr) << title;
    tree().control(title)->press();
    desktop.queue.drain();
    EXPECT_EQ(defaults.lastVisibleWebView(), view) << title;
    app.reset();
    settleIn();
  }
}

TEST_F(AppearanceTest, TheBoxDoesWhatTheMenusItemDoes) {
  defaults.set(false, UserDefault::showToolBar);
  open();
  const auto isChecked = [this] {
    const auto boxes = tree().all<platform::CheckBoxContent>();
    return std::get<platform::CheckBoxContent>(boxes.at(0)->element().content).isOn.get();
  };
  EXPECT_FALSE(isChecked());
  ASSERT_NE(tree().control("Show Toolbar"), nullptr);
  tree().control("Show Toolbar")->press();
  desktop.queue.drain();
  EXPECT_TRUE(defaults.showToolBar());
  EXPECT_EQ(menuItem("Show Toolbar")->state(), platform::NSMenuItem::State::on);
  EXPECT_TRUE(isChecked());
  menuItem("Show Toolbar")->action();
  desktop.queue.drain();
  EXPECT_FALSE(isChecked());
}

TEST_F(AppearanceTest, TheDesktopsPictureIsReadOnceInTheSizeInWhichItIsShown) {
  desktop.workspace.desktopImages[{0, 0}] = "/pictures/mine.jpg";
  open();
  ASSERT_EQ(desktop.imagesAskedFor.size(), 1U);
  EXPECT_EQ(desktop.imagesAskedFor.front().first, "/pictures/mine.jpg");
  EXPECT_EQ(desktop.imagesAskedFor.front().second, (platform::NSSize{388, 220}));
  EXPECT_TRUE(hasLogged("Q$: 1a Success!"));
  choose("Width:", 0);
  EXPECT_EQ(desktop.imagesAskedFor.size(), 1U);
}

TEST_F(AppearanceTest, WithoutAPictureOfTheUsersTheProgramsOwnIsShown) {
  open();
  ASSERT_EQ(desktop.imagesAskedFor.size(), 1U);
  EXPECT_EQ(desktop.imagesAskedFor.front().first, "/images/Velkin16x9_light");
  const auto hosted = tree().all([](const HeadlessView& view) { return view.hosted != nullptr; });
  EXPECT_TRUE(std::ranges::any_of(hosted, [](const HeadlessView* view) {
    return dynamic_cast<platform::HeadlessImage*>(view->hosted) != nullptr;
  }));
}

TEST_F(AppearanceTest, APictureThatCanNotBeReadGivesWayToTheProgramsOwn) {
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  desktop.workspace.desktopImages[{0, 0}] = "/pictures/broken.jpg";
  desktop.brokenImages = {"/pictures/broken.jpg"};
  open();
  ASSERT_EQ(desktop.imagesAskedFor.size(), 3U);
  EXPECT_EQ(desktop.imagesAskedFor.back().first, "/images/Velkin16x9_dark");
  EXPECT_FALSE(hasLogged("Success!"));
}

TEST_F(AppearanceTest, ThePanelMayCloseBeforeThePictureIsRead) {
  controller = &launch();
  controller->appearanceClicked();
  controller->appearancePanel().close();
  desktop.queue.drain();
  EXPECT_EQ(controller->appearanceHostingController(), nullptr);
}

}  // namespace
}  // namespace velkin
