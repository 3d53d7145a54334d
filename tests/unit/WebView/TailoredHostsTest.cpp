#include "Helpers/ViewAddresses.h"
#include "WebView/Alternatives/ChatGPTWebViewController.h"
#include "WebView/Alternatives/HemingwayWebViewController.h"
#include "WebView/Alternatives/WrappedWebView.h"
#include "unit/AppFixture.h"

namespace velkin {
namespace {

using platform::NSHostingController;
using TailoredHostsTest = AppFixture;

platform::HeadlessWebView& engineIn(const std::shared_ptr<platform::WKWebView>& view) {
  return dynamic_cast<platform::HeadlessWebView&>(*view);
}

TEST_F(TailoredHostsTest, TheStyleSheetStandsInOneLineOfAScript) {
  const auto& css = ChatGPTWebViewController::cssString;
  EXPECT_EQ(css.find_first_of("'\n`"), std::string::npos) << "it would end the text that it stands in";
  for (const auto* rule :
       {".text-xs.text-center { opacity: 0; height: 0; margin-bottom: -10px; }",
        ".sticky, .pointer-events-auto.flex.border-orange-500, [class*=\"shared__Capabilities\"] { display: "
        "none !important; }",
        "[class*=\"shared__Wrapper\"] { align-items: center; justify-content: center; text-align: center; "
        "margin-top: 15vh; }",
        "[class*=\"shared__Wrapper\"] h3 { margin-top: -40px; font-size: 20px; }"}) {
    EXPECT_NE(css.find(rule), std::string::npos) << rule;
  }
  EXPECT_EQ(ChatGPTWebViewController::source,
            "  var style = document.createElement('style');\n  style.innerHTML = '" + css +
                "';\n  document.head.appendChild(style);");
  EXPECT_EQ(ChatGPTWebViewController::userScript.source, ChatGPTWebViewController::source);
}

TEST_F(TailoredHostsTest, TheWrapperPagesHoldAnotherOne) {
  for (const auto* page : {&ChatGPTWebViewController::smallHtml, &ChatGPTWebViewController::htmlString,
                           &ChatGPTWebViewController::htmlButtonString}) {
    EXPECT_NE(page->find("<title>ChatGPT</title>"), std::string::npos);
    EXPECT_NE(page->find("<div class=\"page darwin\">"), std::string::npos);
    EXPECT_NE(page->find("<webview"), std::string::npos);
    EXPECT_EQ(page->find("<button") == std::string::npos, page == &ChatGPTWebViewController::smallHtml);
  }
  const auto& script = ChatGPTWebViewController::pureScript;
  EXPECT_LT(script.find("'dom-ready'"), script.find("insertCSS(`" + ChatGPTWebViewController::cssString));
  EXPECT_LT(script.find("insertCSS"),
            script.find("executeJavaScript(`" + ChatGPTWebViewController::headingScript));
}

TEST_F(TailoredHostsTest, TheChatPageIsLoadedAtTheStoredSizeAndTrimmedByLoadAndMessage) {
  defaults.set(700.0, UserDefault::webViewWidth);
  NSHostingController<ChatGPTUIView> host{ChatGPTUIView{}};
  host.view();
  auto& controller = *host.rootView.controller;
  ASSERT_NE(controller.webView(), nullptr);
  auto& engine = engineIn(controller.webView());
  EXPECT_EQ(engine.frame().size.width, 700.0);
  EXPECT_EQ(engine.loads.at(0).url, getUrl(WebViewSwitchType::chatgpt));
  EXPECT_EQ(engine.navigationDelegate, &controller);
  ASSERT_EQ(engine.configuration().userContentController.messageHandlers.size(), 1U);
  EXPECT_EQ(engine.configuration().userContentController.messageHandlers[0].first, "dom-ready");
  EXPECT_EQ(&controller.config(), &controller.config());
  controller.didFinish(engine);
  EXPECT_EQ(log.back(), "Q$: ChatGPTWebViewController.webView(_:didFinish:) ");
  controller.didReceiveScriptMessage("dom-ready", "");
  EXPECT_TRUE(hasLogged("userContentController(_:didReceive:) dom_ready"));
  ASSERT_EQ(engine.scripts.size(), 2U) << "each adds its heading, and nothing prevents it";
  EXPECT_EQ(engine.scripts[0], engine.scripts[1]);
  EXPECT_EQ(engine.scripts[0],
            ChatGPTWebViewController::source + "\n" + ChatGPTWebViewController::headingScript);
}

TEST_F(TailoredHostsTest, AMessageBeforeTheViewIsThereIsNoHarm) {
  ChatGPTWebViewController controller;
  controller.didReceiveScriptMessage("dom-ready", "");
  EXPECT_EQ(controller.webView(), nullptr);
}

TEST_F(TailoredHostsTest, TheCheckersPageIsDarkenedAfterEachLoad) {
  NSHostingController<HemingwayUIView> host{HemingwayUIView{}};
  host.view();
  auto& controller = *host.rootView.controller;
  auto& engine = engineIn(controller.webView());
  EXPECT_EQ(engine.loads.at(0).url, getUrl(WebViewSwitchType::hemingway));
  controller.didFinish(engine);
  EXPECT_TRUE(log.back().ends_with(" script run well")) << log.back();
  engine.scriptError = platform::NSError{"WKErrorDomain", 4, "the page's own words"};
  controller.didFinish(engine);
  EXPECT_NE(log.back().find(" script run "), std::string::npos);
  EXPECT_EQ(log.back().find("the page's own words"), std::string::npos);
  EXPECT_EQ(engine.scripts,
            (std::vector{HemingwayWebViewController::cssScript, HemingwayWebViewController::cssScript}));
  for (const auto* selector : {".hemingway-desktop-sidebar-container { display: none; }",
                               ".hemingway-editor-components-container { flex-basis: 60em; }",
                               ".hemingway-editor-container { display: flex;"}) {
    EXPECT_NE(engine.scripts[0].find(selector), std::string::npos) << selector;
  }
}

TEST_F(TailoredHostsTest, AWrappedPageWithoutAFormIsOnlyALineInTheLog) {
  WrappedWebViewController controller;
  auto& engine = engineIn(controller.webView());
  engine.scriptError = platform::NSError{"WKErrorDomain", 4, "TypeError: undefined is not an object"};
  controller.didFinish(engine);
  EXPECT_TRUE(log.back().starts_with("Error evaluating JavaScript: ")) << log.back();
  EXPECT_TRUE(engine.scripts.back().ends_with("submitButton.id = \"submit-button\";"));
}

}  // namespace
}  // namespace velkin
