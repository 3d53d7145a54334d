#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/Gtk/IsolatedPage.h"
#include "Platform/NSPopover.h"
#include "gtk/GtkFixture.h"
#include "gtk/Loads.h"
#include "gtk/LoopbackServer.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace platform {
namespace {

class LoadsAsked : public Loads {
 public:
  std::vector<WKNavigationAction> asked;
  WKNavigationActionPolicy decidePolicyFor(WKWebView&, const WKNavigationAction& action) override {
    asked.push_back(action);
    return WKNavigationActionPolicy::allow;
  }
};

/// A page that tries every way out, and one that a view which isn't isolated has.
class IsolatedPageTest : public GtkFixture {
 protected:
  IsolatedPageTest()
      : popover(NSPopover::make()), server([](int connection, const std::string&) {
          LoopbackServer::send(connection,
                               LoopbackServer::answer(200, "", "Access-Control-Allow-Origin: *\r\n"));
        }) {}

  void load(bool isIsolated, const std::string& body, std::vector<std::string> scripts = {}) {
    webView = WKWebView::make(
        {},
        {.usesPersistentDataStore = false, .isIsolated = isIsolated, .isolatedScripts = std::move(scripts)});
    webView->navigationDelegate = &loads;
    webView->loadHTMLString("<!DOCTYPE html><html><head></head><body>" + body + "</body></html>",
                            std::nullopt);
    show(dynamic_cast<GtkWebView&>(*webView).widget());
    ASSERT_TRUE(wait([&] { return loads.finished > 0; }));
  }

  std::string evaluate(const std::string& script) { return evaluateIn(*webView, script); }

  /// Each thing that a page can do to reach the server, as statements of a script.
  std::vector<std::string> waysOut() const {
    const auto to = [this](const std::string& name) { return "'" + server.address("/" + name) + "'"; };
    const auto link = [&](const std::string& relation, const std::string& name) {
      return "let l = document.createElement('link'); l.rel = '" + relation + "'; l.href = " + to(name) +
             "; document.head.append(l)";
    };
    return {"fetch(" + to("fetch") + ")",
            "new Image().src = " + to("image"),
            "navigator.sendBeacon(" + to("beacon") + ", 'x')",
            "let r = new XMLHttpRequest(); r.open('GET', " + to("xhr") + "); r.send()",
            "let s = document.createElement('script'); s.src = " + to("script") + "; document.body.append(s)",
            "let l = document.createElement('link'); l.rel = 'stylesheet'; l.href = " + to("style") +
                "; document.head.append(l)",
            link("preconnect", "preconnect"),
            link("dns-prefetch", "lookup"),
            link("prefetch", "prefetch"),
            link("preload", "preload") + "; l.as = 'image'",
            link("modulepreload", "module"),
            link("manifest", "manifest"),
            link("icon", "icon"),
            "let p = new RTCPeerConnection({iceServers: [{urls: " + to("stun") +
                ".replace('http://', 'stun:').replace('/stun', '')}]}); p.createDataChannel('x'); "
                "p.createOffer().then(o => p.setLocalDescription(o))",
            "let f = document.createElement('iframe'); f.src = " + to("frame") + "; document.body.append(f)",
            "let v = document.createElement('video'); v.src = " + to("video") + "; document.body.append(v)",
            "new WebSocket(" + to("socket") + ".replace('http', 'ws'))",
            "new Worker(" + to("worker") + ")",
            "window.open(" + to("window") + ")",
            "let a = document.createElement('a'); a.href = " + to("link") +
                "; document.body.append(a); a.click()",
            "let n = document.createElement('a'); n.href = " + to("download") +
                "; n.download = 'x'; document.body.append(n); n.click()",
            "let o = document.createElement('form'); o.method = 'post'; o.action = " + to("form") +
                "; document.body.append(o); o.submit()",
            "location.href = " + to("location")};
  }

  /// Runs the statement in the page and lets what it started come to an end.
  void attempt(const std::string& statement) {
    evaluate("try { (() => { " + statement + " })(); } catch (e) {} 1");
    bool isOver = false;
    g_timeout_add(
        120,
        [](gpointer over) -> gboolean {
          *static_cast<bool*>(over) = true;
          return G_SOURCE_REMOVE;
        },
        &isOver);
    while (!isOver) g_main_context_iteration(nullptr, TRUE);
  }

  std::unique_ptr<NSPopover> popover;
  LoopbackServer server;
  LoadsAsked loads;
  std::shared_ptr<WKWebView> webView;
};

TEST_F(IsolatedPageTest, NoWayOutReachesAServer) {
  load(true, "<p id=text>An answer</p><img src='" + server.address("/tag") +
                 "'><meta http-equiv=refresh content='0;url=" + server.address("/refresh") +
                 "'><link rel=preconnect href='" + server.address("/") + "'><base href='" +
                 server.address("/base") + "'><img src=relative><svg><image href='" + server.address("/svg") +
                 "'/><use href='" + server.address("/use#x") + "'/></svg><link rel=preload as=font href='" +
                 server.address("/font") + "'>");
  for (const auto& way : waysOut()) {
    attempt(way);
    EXPECT_EQ(server.connections(), 0) << way;
    EXPECT_EQ(evaluate("location.href"), "\"about:blank\"") << way;
  }
  EXPECT_EQ(evaluate("document.getElementById('text').textContent"), "\"An answer\"");
}

TEST_F(IsolatedPageTest, APageThatIsNotIsolatedConnectsForALink) {
  load(false, "<link rel=preconnect href='" + server.address("/") + "'>");
  EXPECT_TRUE(wait([&] { return server.connections() > 0; })) << "or the test above proves nothing";
}

TEST_F(IsolatedPageTest, APageThatIsNotIsolatedDoesReachTheServer) {
  load(false, "<p>A page</p>");
  attempt(waysOut().front());
  EXPECT_TRUE(wait([&] { return !server.requests().empty(); })) << "or the test above proves nothing";
}

TEST_F(IsolatedPageTest, PicturesComeFromElsewhereOnlyWhereTheyMayAndByHttps) {
  const auto pictures = [](bool mayCome) {
    const auto policy = isolatedContentSecurityPolicy({}, mayCome);
    const auto from = policy.find("img-src");
    return policy.substr(from, policy.find(';', from) - from);
  };
  EXPECT_EQ(pictures(false), "img-src data:");
  EXPECT_EQ(pictures(true), "img-src data: https:");
}

TEST_F(IsolatedPageTest, ItsStylesAndTheScriptsThatWereNamedRun) {
  load(true,
       "<style>p{color:rgb(1, 2, 3)}</style><p onclick=\"named(this)\">x</p>"
       "<script>function named(e) { e.textContent = 'clicked'; }</script>",
       {"function named(e) { e.textContent = 'clicked'; }", "named(this)"});
  EXPECT_EQ(evaluate("getComputedStyle(document.querySelector('p')).color"), "\"rgb(1, 2, 3)\"");
  EXPECT_EQ(evaluate("document.querySelector('p').click(), document.querySelector('p').textContent"),
            "\"clicked\"");
}

TEST_F(IsolatedPageTest, NoOtherScriptRuns) {
  const std::string mark = "document.documentElement.dataset.ran = 'yes'";
  load(true,
       "<p id=p onclick=\"" + mark + "\">x</p><script>" + mark + "</script><script type=module>" + mark +
           "</script><svg onload=\"" + mark + "\"><script>" + mark + "</script></svg><img src=x onerror=\"" +
           mark + "\"><a id=a href=\"javascript:" + mark + "\">x</a><iframe srcdoc=\"<script>parent." + mark +
           "</script>\"></iframe><details open ontoggle=\"" + mark + "\">x</details>",
       {"something else"});
  evaluate("p.click(), a.click(), 1");
  // A script that the program runs comes behind all that.
  EXPECT_EQ(evaluate("document.documentElement.dataset.ran === undefined"), "true");
}

TEST_F(IsolatedPageTest, DialoguesDoNotHoldItUp) {
  load(true, "<p>x</p>");
  EXPECT_EQ(evaluate("alert('a'), confirm('b')"), "false");
  EXPECT_EQ(evaluate("prompt('c')"), "null");
}

TEST_F(IsolatedPageTest, TheDelegateIsAskedFirstAndAScriptsClickIsNoClick) {
  // By a script of the page's own: one that the program runs counts as the user's doing.
  load(true, "<a id=a href='https://example.org/'>x</a><script>setTimeout(() => a.click(), 50)</script>",
       {"setTimeout(() => a.click(), 50)"});
  const auto asked = [&] {
    return std::find_if(loads.asked.begin(), loads.asked.end(), [](const auto& action) {
      return action.url.absoluteString() == "https://example.org/";
    });
  };
  ASSERT_TRUE(wait([&] { return asked() != loads.asked.end(); }));
  EXPECT_EQ(asked()->navigationType, WKNavigationType::other);
}

TEST_F(IsolatedPageTest, APageIsSeenWhenItIsPaintedAndNothingBeforeIt) {
  load(true, "<p>first</p>");
  GtkWidget* view = gtk_widget_get_first_child(dynamic_cast<GtkWebView&>(*webView).widget());
  ASSERT_TRUE(wait([&] { return gtk_widget_get_opacity(view) == 1; }));
  webView->loadHTMLString("<p>second</p>", std::nullopt);
  EXPECT_EQ(gtk_widget_get_opacity(view), 0);
  EXPECT_TRUE(wait([&] { return gtk_widget_get_opacity(view) == 1; }));
  EXPECT_EQ(evaluate("document.body.textContent"), "\"second\"");
}

TEST_F(IsolatedPageTest, AViewThatEndsBeforeItsPageIsPaintedHoldsItsProcessNoLonger) {
  webView = WKWebView::make({}, {.usesPersistentDataStore = false, .isIsolated = true});
  webView->navigationDelegate = &loads;
  webView->loadHTMLString("<p>Nobody sees me</p>", std::nullopt);
  // Never on a screen: it waits for a frame that doesn't come.
  ASSERT_TRUE(wait([&] { return loads.finished > 0; }));
  gpointer view = gtk_widget_get_first_child(dynamic_cast<GtkWebView&>(*webView).widget());
  g_object_add_weak_pointer(G_OBJECT(view), &view);
  webView.reset();
  EXPECT_TRUE(wait([&] { return view == nullptr; }));
}

TEST_F(IsolatedPageTest, ANulCharacterDoesNotEndThePage) {
  load(true, std::string("<p>before\0after</p>", 19));
  EXPECT_EQ(evaluate("document.body.textContent.includes('after')"), "true");
}

}  // namespace
}  // namespace platform
