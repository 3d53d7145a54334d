#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/NSPopover.h"
#include "Platform/View/State.h"
#include "gtk/GtkFixture.h"
#include "gtk/Loads.h"

#include <memory>

namespace platform {
namespace {

struct Page {
  std::shared_ptr<WKWebView> webView;

  View body() const {
    return HostedView(
        webView.get(), [view = webView]() -> NSView* { return view.get(); }, [](NSView&) {});
  }
};

/// The page in one of two places, as a switch between the main place and a sidebar moves it.
struct TwoPlaces {
  Page page;
  State<bool> isAside{false};

  View body() const {
    return HStack(
        {.spacing = 0, .alignment = Alignment::fill},
        {when(isAside.get(), [&] { return View(page).frame({.width = 150, .maxHeight = infinity}); }),
         VStack({when(!isAside.get(), [&] { return View(page); })}).frame({.maxWidth = infinity})});
  }
};

class GtkWebViewTest : public GtkFixture {
 protected:
  GtkWebViewTest() : popover(NSPopover::make()), webView(WKWebView::make({{0, 0}, {320, 240}}, {})) {
    webView->navigationDelegate = &loads;
  }
  ~GtkWebViewTest() override { hosting.reset(); }

  void showPage(const std::string& html) {
    webView->loadHTMLString(html, std::nullopt);
    hosting = std::make_unique<GtkHostingView>(View(places));
    show(hosting->widget());
    ASSERT_TRUE(wait([&] { return loads.finished == 1; }));
  }

  std::string evaluate(const std::string& script) { return evaluateIn(*webView, script); }

  std::unique_ptr<NSPopover> popover;
  Loads loads;
  std::shared_ptr<WKWebView> webView;
  TwoPlaces places{{webView}};
  std::unique_ptr<GtkHostingView> hosting;
};

TEST_F(GtkWebViewTest, TheEngineStartsWithTheFirstLoadAndNotBefore) {
  auto& view = dynamic_cast<GtkWebView&>(*webView);
  EXPECT_EQ(gtk_widget_get_first_child(view.widget()), nullptr);
  EXPECT_FALSE(webView->url().has_value());
  webView->loadHTMLString("<p>x", std::nullopt);
  EXPECT_NE(gtk_widget_get_first_child(view.widget()), nullptr);
  EXPECT_TRUE(webView->url().has_value());
}

TEST_F(GtkWebViewTest, MovingKeepsThePageItsScrollPositionAndTypedText) {
  showPage("<textarea id=t></textarea><div style='height:5000px'></div>");
  evaluate("document.getElementById('t').value = 'typed'; window.mark = 7; window.scrollTo(0, 1234); 1");
  ASSERT_TRUE(wait([&] { return evaluate("window.scrollY") == "1234"; }));
  for (int i = 0; i < 6; ++i) {
    places.isAside.set(!places.isAside.get());
    turn();
  }
  places.isAside.set(true);
  ASSERT_TRUE(wait([&] { return evaluate("window.innerWidth") == "150"; }));
  places.isAside.set(false);
  ASSERT_TRUE(wait([&] { return evaluate("window.innerWidth") == "400"; }));
  EXPECT_EQ(evaluate("document.getElementById('t').value + window.mark"), "\"typed7\"");
  EXPECT_EQ(evaluate("window.scrollY"), "1234");
  EXPECT_EQ(loads.finished, 1);
}

TEST_F(GtkWebViewTest, PageZoomChangesThePagesOwnWidth) {
  showPage("<p>zoom");
  ASSERT_TRUE(wait([&] { return evaluate("window.innerWidth") == "400"; }));
  webView->setPageZoom(1.25);
  EXPECT_TRUE(wait([&] { return evaluate("window.innerWidth") == "320"; }));
  EXPECT_EQ(webView->pageZoom(), 1.25);
}

TEST_F(GtkWebViewTest, AZoomThatIsNoneLeavesThePageAsItIs) {
  showPage("<p>zoom");
  ASSERT_TRUE(wait([&] { return evaluate("window.innerWidth") == "400"; }));
  webView->setPageZoom(1.25);
  ASSERT_TRUE(wait([&] { return evaluate("window.innerWidth") == "320"; }));
  for (const double zoom : {0.0, -1.0}) {
    webView->setPageZoom(zoom);
    EXPECT_TRUE(wait([&] { return evaluate("window.innerWidth") == "400"; })) << zoom;
  }
}

TEST_F(GtkWebViewTest, TheEnginesHiddenTextHasNoCursorThatBlinks) {
  showPage("<p>keys");
  GtkWidget* holder = dynamic_cast<GtkViewBase&>(*webView).widget();
  GtkWidget* engineView = gtk_widget_get_first_child(holder);
  int found = 0;
  for (GtkWidget* child = gtk_widget_get_first_child(engineView); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (!GTK_IS_TEXT_VIEW(child)) continue;
    ++found;
    EXPECT_FALSE(gtk_text_view_get_cursor_visible(GTK_TEXT_VIEW(child)));
  }
  EXPECT_EQ(found, 1);
}

TEST_F(GtkWebViewTest, TheUserAgentIsTheOneGiven) {
  webView->setCustomUserAgent("Tester/1.0");
  showPage("<p>agent");
  EXPECT_EQ(evaluate("navigator.userAgent"), "\"Tester/1.0\"");
}

TEST_F(GtkWebViewTest, AScriptsErrorIsAValue) {
  showPage("<p>error");
  EXPECT_EQ(evaluate("throw new Error('no')").find("error: "), 0U);
  EXPECT_EQ(evaluate("undefined"), "");
  EXPECT_EQ(evaluate("[1, 'a', {b: null}]"), "[1,\"a\",{\"b\":null}]");
}

class Messages : public WKScriptMessageHandler {
 public:
  std::vector<std::pair<std::string, std::string>> received;
  void didReceiveScriptMessage(const std::string& name, const std::string& body) override {
    received.emplace_back(name, body);
  }
};

TEST_F(GtkWebViewTest, UserScriptsRunAndPagesPostMessages) {
  Messages messages;
  WKWebViewConfiguration configuration;
  configuration.userContentController.addUserScript(
      {"window.early = document.body === null", WKUserScript::InjectionTime::atDocumentStart, true});
  configuration.userContentController.addScriptMessageHandler(messages, "dom-ready");
  webView = WKWebView::make({{0, 0}, {320, 240}}, configuration);
  webView->navigationDelegate = &loads;
  places.page.webView = webView;
  showPage("<script>window.webkit.messageHandlers['dom-ready'].postMessage({early: window.early})</script>");
  ASSERT_TRUE(wait([&] { return messages.received.size() == 1; }));
  EXPECT_EQ(messages.received[0], (std::pair<std::string, std::string>("dom-ready", "{\"early\":true}")));
}

TEST_F(GtkWebViewTest, AScriptBeforeAnyPageFailsAtOnce) {
  bool hasFailed = false;
  webView->evaluateJavaScript("1", [&](const auto&, const auto& error) { hasFailed = error.has_value(); });
  EXPECT_TRUE(hasFailed);
}

}  // namespace
}  // namespace platform
