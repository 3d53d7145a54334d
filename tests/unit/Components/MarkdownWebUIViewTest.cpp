#include "Components/MarkdownHtmlHelper.h"
#include "Components/MarkdownWebUIView.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSAppearance.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

using platform::NSAppearance;
using platform::URL;
using platform::WKNavigationActionPolicy;
using platform::WKNavigationType;

class MarkdownWebUIViewTest : public testing::Test {
 protected:
  MarkdownWebUIViewTest() {
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~MarkdownWebUIViewTest() override { platform::setDebugLogSink({}); }

  /// Two views in one place, one after the other, over the same page.
  struct Place {
    platform::State<bool> isShown{true};
    platform::State<double> zoom{1};
    platform::State<std::string> html;
    std::shared_ptr<MarkdownWebViewController> controller;

    platform::View body() const {
      return platform::when(isShown.get(), [this]() -> platform::View {
        return MarkdownWebUIView{
            .zoomLevel = zoom.binding(), .controller = controller, .markdownState = html.binding()};
      });
    }
  };

  std::shared_ptr<MarkdownWebViewController> makeController() {
    return std::make_shared<MarkdownWebViewController>(platform::WKWebView::make({}, {}));
  }
  platform::HeadlessWebView& page() { return *desktop.webViews.back(); }

  platform::HeadlessPlatform desktop;
  std::vector<std::string> log;
};

TEST_F(MarkdownWebUIViewTest, eachChangeOfTextOrZoomLoadsThePageAnew) {
  platform::NSHostingController<Place> host(Place{.controller = makeController()});
  host.view();
  EXPECT_EQ(page().htmlLoads, std::vector<std::string>{MarkdownHtmlHelper(false).makeHTMLString("")});
  host.rootView.html.set("<p>one</p>");
  desktop.queue.drain();
  ASSERT_EQ(page().htmlLoads.size(), 2U);
  EXPECT_EQ(page().htmlLoads.back(), MarkdownHtmlHelper(false).makeHTMLString("<p>one</p>"));
  host.rootView.zoom.set(1.5);
  desktop.queue.drain();
  EXPECT_EQ(page().htmlLoads.size(), 3U);
  EXPECT_EQ(page().pageZoom(), 1.5);
}

TEST_F(MarkdownWebUIViewTest, aPageComesOnShowAsFreshlyLoaded) {
  platform::NSHostingController<Place> host(Place{.controller = makeController()});
  host.view();
  host.rootView.isShown.set(false);
  desktop.queue.drain();
  host.rootView.isShown.set(true);
  desktop.queue.drain();
  EXPECT_EQ(page().htmlLoads.size(), 2U);
}

TEST_F(MarkdownWebUIViewTest, thePageHasTheDesktopsColoursOfTheMomentItCameOnShow) {
  desktop.appearance = NSAppearance{platform::NSAppearanceNameDarkAqua};
  platform::NSHostingController<Place> host(Place{.controller = makeController()});
  host.view();
  EXPECT_EQ(page().htmlLoads.back(), MarkdownHtmlHelper(true).makeHTMLString(""));
  desktop.appearance = NSAppearance{platform::NSAppearanceNameAqua};
  desktop.distributedNotifications.post(platform::interfaceThemeChangedNotification, "");
  host.rootView.html.set("x");
  desktop.queue.drain();
  EXPECT_EQ(page().htmlLoads.back(), MarkdownHtmlHelper(true).makeHTMLString("x"));
}

TEST_F(MarkdownWebUIViewTest, aChangeOfThemeOnlyTurnsTheControllersFlagRound) {
  const auto controller = makeController();
  EXPECT_FALSE(controller->isDarkMode);
  desktop.distributedNotifications.post(platform::interfaceThemeChangedNotification, "");
  EXPECT_FALSE(controller->isDarkMode) << "it listens from when its view is loaded";
  controller->view();
  desktop.distributedNotifications.post(platform::interfaceThemeChangedNotification, "");
  EXPECT_TRUE(controller->isDarkMode);
  EXPECT_TRUE(page().htmlLoads.empty());
}

TEST_F(MarkdownWebUIViewTest, aLoadedPageShowsNoScrollBar) {
  const auto controller = makeController();
  controller->didFinish(page());
  EXPECT_EQ(page().scripts, std::vector<std::string>{"document.body.style.overflow = 'hidden';"});
  EXPECT_TRUE(log.empty());
  page().scriptError = platform::NSError{"WKErrorDomain", 4, "it broke"};
  controller->didFinish(page());
  EXPECT_EQ(log, std::vector<std::string>{"Error evaluating JavaScript: WKErrorDomain 4"});
}

TEST_F(MarkdownWebUIViewTest, linksOpenInTheBrowserAndNothingElseLeavesThePage) {
  struct Row {
    const char* address;
    WKNavigationType type;
    WKNavigationActionPolicy policy;
    bool opens;
  };
  constexpr auto cancel = WKNavigationActionPolicy::cancel;
  constexpr auto allow = WKNavigationActionPolicy::allow;
  const std::vector<Row> rows = {
      {"about:blank", WKNavigationType::other, allow, false},
      {"about:blank#part", WKNavigationType::linkActivated, allow, false},
      {"https://example.org/a", WKNavigationType::linkActivated, cancel, true},
      {"http://example.org/a", WKNavigationType::linkActivated, cancel, true},
      {"mailto:someone@example.org", WKNavigationType::linkActivated, cancel, true},
      {"https://example.org/a", WKNavigationType::other, cancel, false},
      {"https://example.org/a", WKNavigationType::formSubmitted, cancel, false},
      {"file:///etc/passwd", WKNavigationType::linkActivated, cancel, false},
      {"javascript:alert(1)", WKNavigationType::linkActivated, cancel, false},
      {"data:text/html,x", WKNavigationType::linkActivated, cancel, false},
      {"strange-program://run", WKNavigationType::linkActivated, cancel, false},
      {"about:config", WKNavigationType::linkActivated, cancel, false},
  };
  const auto controller = makeController();
  for (const auto& row : rows) {
    desktop.workspace.opened.clear();
    const auto policy = controller->decidePolicyFor(page(), {*URL::parse(row.address), row.type});
    EXPECT_EQ(policy, row.policy) << row.address;
    EXPECT_EQ(!desktop.workspace.opened.empty(), row.opens) << row.address;
  }
}

TEST_F(MarkdownWebUIViewTest, aPageOutlivesItsController) {
  auto controller = makeController();
  const auto webView = controller->webView;
  EXPECT_EQ(webView->navigationDelegate, controller.get());
  controller.reset();
  EXPECT_EQ(webView->navigationDelegate, nullptr);
}

}  // namespace
}  // namespace velkin
