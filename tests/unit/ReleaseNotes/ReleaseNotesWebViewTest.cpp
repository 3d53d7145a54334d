#include "ReleaseNotes/ReleaseNotesUIView.h"
#include "ReleaseNotes/ReleaseNotesWebView.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

class ReleaseNotesWebViewTest : public AppFixture {
 protected:
  std::string page() {
    platform::NSHostingController<ReleaseNotesUIView> host(
        ReleaseNotesUIView{nullptr, std::make_shared<SharedState>()});
    host.view();
    return desktop.webViews.back()->htmlLoads.back();
  }
};

TEST_F(ReleaseNotesWebViewTest, ThePageIsLightOrDarkAsTheDesktopIsWhenItIsMade) {
  EXPECT_NE(page().find("#DDDDEE"), std::string::npos);
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  EXPECT_NE(page().find("#333344"), std::string::npos);
  EXPECT_NE(page().find("lightgray"), std::string::npos);
}

TEST_F(ReleaseNotesWebViewTest, AChangeOfTheLookShowsWithTheNextPage) {
  ReleaseNotesWebView view;
  platform::NSHostingController<ReleaseNotesWebView> host(view);
  host.view();
  desktop.appearance = platform::NSAppearance{platform::NSAppearanceNameDarkAqua};
  platform::NSDistributedNotificationCenter::defaultCenter().post(platform::interfaceThemeChangedNotification,
                                                                  "");
  desktop.queue.drain();
  EXPECT_EQ(desktop.webViews.back()->htmlLoads.size(), 1U);
  EXPECT_FALSE((*view.controller)->isDarkMode);
}

TEST_F(ReleaseNotesWebViewTest, AllBuildsShowWhileTheAdditionalViewsAreOn) {
  const auto current = page().size();
  defaults.set(true, UserDefault::hemingwayEnabled);
  EXPECT_GT(page().size(), current);
}

TEST_F(ReleaseNotesWebViewTest, ThePageHasTheZoomOfTheSettingsAndAFailingScriptIsLogged) {
  defaults.set(1.2, UserDefault::webViewZoom);
  ReleaseNotesWebViewController controller;
  controller.view();
  auto& engine = *desktop.webViews.back();
  EXPECT_EQ(engine.pageZoom(), 1.2);
  engine.scriptError = platform::NSError{"WKErrorDomain", 4, "gone"};
  engine.navigationDelegate->didFinish(engine);
  EXPECT_TRUE(hasLogged("Error evaluating JavaScript: WKErrorDomain 4"));
}

}  // namespace
}  // namespace velkin
