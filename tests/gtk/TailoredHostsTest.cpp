#include "Helpers/UserDefaultsHelper.h"
#include "WebView/Alternatives/ChatGPTWebViewController.h"
#include "WebView/Alternatives/HemingwayWebViewController.h"
#include "WebView/Alternatives/WrappedWebView.h"
#include "gtk/GtkFixture.h"

#include <string>

namespace velkin {
namespace {

using platform::GtkFixture;
using platform::WKWebView;

/// What counts of the services' own markup.
constexpr const char* chatPage = R"(<!DOCTYPE html><html><head><title>chat</title></head><body>
<div class="sticky" id="side">side</div>
<div class="pointer-events-auto flex border-orange-500" id="banner">banner</div>
<div class="main shared__Wrapper-a1" id="wrapper"><div class="shared__Capabilities-b2" id="hints">hints</div></div>
<form><textarea class="m-0"></textarea>
  <button>Send</button></form>
<div class="text-xs text-center" id="below">a message</div>
<script>setTimeout(() => window.webkit.messageHandlers['dom-ready'] &&
  window.webkit.messageHandlers['dom-ready'].postMessage('x'), 0)</script>
</body></html>)";
constexpr const char* checkerPage = R"(<!DOCTYPE html><html><head></head><body>
<div class="hemingway-desktop-sidebar-container" id="side">side</div>
<div style="display: flex"><div class="hemingway-editor-components-container" id="place">
<div class="hemingway-editor-container" id="editor"><div class="x-toolbar" id="bar">bar</div>text</div></div></div>
</body></html>)";

class TailoredPagesTest : public GtkFixture {
 protected:
  static bool becomes(WKWebView& page, const std::string& script, const std::string& expected) {
    std::string last;
    const bool does = wait([&] { return (last = evaluateIn(page, script)) == expected; });
    EXPECT_EQ(last, expected) << script;
    return does;
  }
  static std::string style(const char* id, const char* property) {
    return std::string("getComputedStyle(document.getElementById('") + id + "'))['" + property + "']";
  }
};

TEST_F(TailoredPagesTest, TheChatPageLosesWhatMakesNoSenseInASmallWindow) {
  ChatGPTWebViewController controller;
  controller.view();
  auto& page = *controller.webView();
  page.stopLoading();
  page.loadHTMLString(chatPage, std::nullopt);
  ASSERT_TRUE(becomes(page, style("side", "display"), "\"none\""));
  becomes(page, style("banner", "display"), "\"none\"");
  becomes(page, style("hints", "display"), "\"none\"");
  becomes(page, style("below", "opacity"), "\"0\"");
  becomes(page, style("below", "marginBottom"), "\"-10px\"");
  becomes(page, style("wrapper", "textAlign"), "\"center\"");
  // By the load and by the page's own message.
  becomes(page, "[...document.querySelectorAll('h3')].map(h => h.textContent).join('|')",
          "\"Start by asking anything.|Start by asking anything.\"");
  becomes(page, "getComputedStyle(document.querySelector('h3')).marginTop", "\"-40px\"");
}

TEST_F(TailoredPagesTest, TheCheckersPageIsDarkAndWide) {
  HemingwayWebViewController controller;
  controller.view();
  auto& page = *controller.webView();
  page.stopLoading();
  page.loadHTMLString(checkerPage, std::nullopt);
  ASSERT_TRUE(becomes(page, style("side", "display"), "\"none\""));
  becomes(page, style("editor", "display"), "\"flex\"");
  becomes(page, style("bar", "display"), "\"none\"");
  becomes(page, "getComputedStyle(document.getElementById('place')).flexBasis", "\"960px\"");
  becomes(page, "getComputedStyle(document.body).backgroundColor", "\"rgb(30, 30, 34)\"");
}

TEST_F(TailoredPagesTest, AWrappedPagesSubmitButtonGetsItsName) {
  WrappedWebViewController controller;
  auto& page = *controller.webView();
  page.navigationDelegate = &controller;
  page.loadHTMLString("<form><textarea class='m-0'></textarea><button>Send</button></form><p id='end'></p>",
                      std::nullopt);
  becomes(page, "document.querySelector('button').id", "\"submit-button\"");
}

}  // namespace
}  // namespace velkin
