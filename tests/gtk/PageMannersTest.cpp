#include "Platform/Gtk/GtkKeyEvents.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Platform/Gtk/PagePermissions.h"
#include "Platform/Gtk/PageQuestions.h"
#include "Platform/Gtk/PageState.h"
#include "Platform/Gtk/PopoverWindow.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/Gtk/X11Desktop.h"
#include "Platform/NSPopover.h"
#include "gtk/GtkFixture.h"
#include "gtk/Loads.h"
#include "gtk/LoopbackServer.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <adwaita.h>
#include <unistd.h>

namespace platform {
namespace {

/// A page of a real server in a real window, clicked and typed at by a real pointer and keyboard.
class PageMannersTest : public GtkFixture {
 protected:
  PageMannersTest()
      : popover(NSPopover::make()),
        webView(WKWebView::make({}, {.usesPersistentDataStore = false})),
        server([this](int connection, const std::string& request) { serve(connection, request); }) {
    webView->navigationDelegate = &loads;
    engine().permissions().forget(site(), "location");
    engine().permissions().forget(site(), "notifications");
    engine().permissions().forget(site(), "downloads");
  }
  ~PageMannersTest() override {
    webView.reset();
    for (auto* other : otherWindows()) gtk_window_destroy(other);
    turn();
  }

  void serve(int connection, const std::string& request) const {
    if (request.starts_with("GET /file")) {
      LoopbackServer::send(connection,
                           LoopbackServer::answer(200, "content",
                                                  "Content-Type: application/octet-stream\r\n"
                                                  "Content-Disposition: attachment; filename=\"f.bin\"\r\n"));
    } else if (request.starts_with("GET /frame")) {
      LoopbackServer::send(connection, LoopbackServer::answer(200, frame, "Content-Type: text/html\r\n"));
    } else {
      LoopbackServer::send(connection, LoopbackServer::answer(200, page, "Content-Type: text/html\r\n"));
    }
  }

  static WebEngine& engine() { return GtkPlatform::shared().webEngine(); }
  PopoverWindow& popoverWindow() { return dynamic_cast<PopoverWindow&>(*popover); }
  std::string site() const { return server.address(""); }

  void load(const std::string& html) {
    page = "<!DOCTYPE html><title>page</title><body style='margin:0'>" + html;
    webView->load(URLRequest{*URL::parse(server.address("/page"))});
    show(dynamic_cast<GtkWebView&>(*webView).widget());
    watchKeys(window);
    ASSERT_TRUE(wait([&] { return loads.finished == 1; }));
    // Or a question of the page's has the keyboard.
    ASSERT_TRUE(wait([&] { return gtk_window_is_active(window) || question() != nullptr; }));
    webView->makeFirstResponder();
  }
  WebKitWebView* engineView() {
    return WEBKIT_WEB_VIEW(gtk_widget_get_first_child(dynamic_cast<GtkWebView&>(*webView).widget()));
  }
  std::string evaluate(const std::string& script) { return evaluateIn(*webView, script); }
  static void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }
  void click(int x, int y) {
    const auto place = X11Desktop::frame(window);
    run("xdotool mousemove " + std::to_string(place.x + x) + " " + std::to_string(place.y + y) +
        " sleep 0.05 click 1");
  }
  /// For a page that can't answer now: the main loop has had nothing to do a few times.
  static void settleTurns() {
    for (int i = 0; i < 40; ++i) {
      bool isOver = false;
      g_timeout_add(
          10,
          [](gpointer over) -> gboolean {
            *static_cast<bool*>(over) = true;
            return G_SOURCE_REMOVE;
          },
          &isOver);
      while (!isOver) g_main_context_iteration(nullptr, TRUE);
    }
  }
  /// Lets what is on its way arrive: the page has answered twice since.
  void settle() {
    evaluate("new Promise(done => setTimeout(done, 1)), 1");
    evaluate("1");
    turn();
  }

  /// The windows of the program beside the one with the page.
  std::vector<GtkWindow*> otherWindows() const {
    std::vector<GtkWindow*> found;
    GList* windows = gtk_window_list_toplevels();
    for (GList* entry = windows; entry != nullptr; entry = entry->next) {
      auto* other = GTK_WINDOW(entry->data);
      auto* own = dynamic_cast<PopoverWindow&>(*popover).window();
      if (other != window && other != own && gtk_widget_get_visible(GTK_WIDGET(other)))
        found.push_back(other);
    }
    g_list_free(windows);
    return found;
  }
  AdwMessageDialog* question() const {
    for (auto* other : otherWindows()) {
      if (ADW_IS_MESSAGE_DIALOG(other)) return ADW_MESSAGE_DIALOG(other);
    }
    return nullptr;
  }
  bool waitForQuestion() {
    return wait([&] { return question() != nullptr; });
  }
  /// By its button; without a name by closing it.
  void answerQuestion(const std::string& name) {
    auto* asked = question();
    ASSERT_NE(asked, nullptr);
    GtkWidget* chosen = nullptr;
    for (auto* button : all(GTK_WIDGET(asked), GTK_TYPE_BUTTON)) {
      const char* label = gtk_button_get_label(GTK_BUTTON(button));
      if (label != nullptr && label == name) chosen = button;
    }
    if (name.empty()) {
      gtk_window_close(GTK_WINDOW(asked));
    } else {
      ASSERT_NE(chosen, nullptr);
      g_signal_emit_by_name(chosen, "clicked");
    }
    ASSERT_TRUE(wait([&] { return question() != asked; }));
  }

  /// Those below this process, and no others.
  static void killWebProcesses() {
    std::vector<pid_t> ours = {::getpid()};
    int killed = 0;
    for (std::size_t i = 0; i < ours.size(); ++i) {
      for (const auto& task :
           std::filesystem::directory_iterator("/proc/" + std::to_string(ours[i]) + "/task")) {
        std::ifstream children(task.path() / "children");
        for (pid_t child = 0; children >> child;) {
          ours.push_back(child);
          std::string name;
          std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
          if (name.starts_with("WebKitWebProces") && ::kill(child, SIGKILL) == 0) ++killed;
        }
      }
    }
    ASSERT_GT(killed, 0);
  }

  std::string page;
  std::string frame;
  std::unique_ptr<NSPopover> popover;
  Loads loads;
  std::unique_ptr<WKWebView> webView;
  LoopbackServer server;
};

const std::string wholePageButton =
    "<button style='width:100vw;height:100vh' onclick=\"go()\">x</button><script>";

TEST_F(PageMannersTest, OneClickOpensOneWindow) {
  load(wholePageButton +
       "window.tries = 0; function go() { for (let i = 0; i < 60; ++i) { window.open('/frame?' + i, "
       "'w' + i, 'width=300,height=200'); ++tries; } }</script>");
  click(100, 100);
  ASSERT_TRUE(wait([&] { return evaluate("tries") == "60"; }));
  ASSERT_TRUE(wait([&] { return !otherWindows().empty(); }));
  settle();
  EXPECT_EQ(otherWindows().size(), 1U);
}

TEST_F(PageMannersTest, TheNextClickOpensTheNextWindow) {
  load(wholePageButton +
       "window.tries = 0; function go() { ++tries; window.open('/frame?' + tries, 'w' + tries, "
       "'width=80,height=60'); }</script>");
  click(20, 280);
  ASSERT_TRUE(wait([&] { return otherWindows().size() == 1; }));
  gtk_window_destroy(otherWindows()[0]);
  ASSERT_TRUE(wait([&] { return otherWindows().empty() && X11Desktop::isActive(window); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
  click(20, 280);
  ASSERT_TRUE(wait([&] { return evaluate("tries") == "2"; }));
  EXPECT_TRUE(wait([&] { return otherWindows().size() == 1; }));
}

TEST_F(PageMannersTest, TheQuestionOfAWindowThatGoesGoesWithItAndKeepsNothingOpen) {
  frame =
      "<script>navigator.geolocation.getCurrentPosition(() => {}, () => {});"
      "addEventListener('message', () => window.close());</script>";
  load(wholePageButton +
       "function go() { window.opened = window.open('/frame', 'w', 'width=300,height=200'); }"
       "</script>");
  click(100, 100);
  ASSERT_TRUE(waitForQuestion());
  EXPECT_TRUE(popoverWindow().isKeptOpen());
  evaluate("opened.postMessage('end', '*'), 1");
  ASSERT_TRUE(wait([&] { return otherWindows().empty(); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, APrintDialogueGoesWithItsWindow) {
  frame =
      "<script>addEventListener('message', e => e.data === 'print' ? window.print() : window.close());"
      "</script>";
  load(wholePageButton +
       "function go() { window.opened = window.open('/frame', 'w', 'width=300,height=200'); }"
       "</script>");
  click(100, 100);
  ASSERT_TRUE(wait([&] { return otherWindows().size() == 1; }));
  ASSERT_TRUE(wait([&] {
    evaluate("opened.postMessage('print', '*'), 1");
    return otherWindows().size() == 2;
  }));
  evaluate("opened.postMessage('end', '*'), 1");
  ASSERT_TRUE(wait([&] { return otherWindows().empty(); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, AFileDialogueGoesWithThePageThatAskedForIt) {
  load("<input id=f type=file style='width:100vw;height:100vh'>");
  click(50, 150);
  ASSERT_TRUE(wait([&] { return otherWindows().size() == 1; }));
  EXPECT_TRUE(popoverWindow().isKeptOpen());
  webView->load(URLRequest{*URL::parse(server.address("/other"))});
  ASSERT_TRUE(wait([&] { return otherWindows().empty(); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, AWindowWhoseProcessDiedCloses) {
  load(wholePageButton + "function go() { window.open('/frame', 'w', 'width=300,height=200'); }</script>");
  click(100, 100);
  ASSERT_TRUE(wait([&] { return otherWindows().size() == 1; }));
  ASSERT_TRUE(popoverWindow().isKeptOpen());
  auto* opened = all(GTK_WIDGET(otherWindows()[0]), WEBKIT_TYPE_WEB_VIEW).at(0);
  webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(opened));
  EXPECT_TRUE(wait([&] { return otherWindows().empty(); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, FramesThatAskForTheSameGetOneQuestion) {
  frame =
      "<script>navigator.geolocation.getCurrentPosition(() => {}, () => parent.postMessage('no', '*'))"
      "</script>";
  load(
      "<script>window.refused = 0; addEventListener('message', () => ++refused);"
      "for (let i = 0; i < 20; ++i) { const f = document.createElement('iframe'); f.allow = 'geolocation';"
      "f.src = '/frame?' + i; document.body.append(f); }</script>");
  ASSERT_TRUE(waitForQuestion());
  settle();
  EXPECT_EQ(otherWindows().size(), 1U);
  answerQuestion("Block");
  EXPECT_TRUE(wait([&] { return evaluate("refused") == "20"; })) << evaluate("refused");
  EXPECT_TRUE(otherWindows().empty());
}

TEST_F(PageMannersTest, ASecondNoHoldsUntilThePageIsLeft) {
  // The engine itself refuses a document that was refused before: so each time another one asks.
  frame =
      "<script>navigator.geolocation.getCurrentPosition(() => {}, () => parent.postMessage('no', '*'))"
      "</script>";
  load(
      "<script>window.no = 0; addEventListener('message', () => ++no); function ask() { const f = "
      "document.createElement('iframe'); f.allow = 'geolocation'; f.src = '/frame?' + Math.random(); "
      "document.body.append(f); }</script>");
  for (int refusal = 1; refusal <= 2; ++refusal) {
    evaluate("ask(), 1");
    ASSERT_TRUE(waitForQuestion());
    answerQuestion("");
    ASSERT_TRUE(wait([&] { return evaluate("no") == std::to_string(refusal); }));
  }
  evaluate("ask(), 1");
  ASSERT_TRUE(wait([&] { return evaluate("no") == "3"; }));
  EXPECT_EQ(question(), nullptr);
  webView->reload();
  ASSERT_TRUE(wait([&] { return loads.finished == 2; }));
  evaluate("ask(), 1");
  EXPECT_TRUE(waitForQuestion());
}

TEST_F(PageMannersTest, DownloadsThatNobodyAskedForAreAskedAboutOnce) {
  load(
      "<script>function take(n) { for (let i = 0; i < n; ++i) setTimeout(() => { const a = "
      "document.createElement('a'); a.href = '/file?' + i; a.download = 'f'; document.body.append(a); "
      "a.click(); "
      "}, i * 20); }</script>");
  evaluate("setTimeout(() => take(12), 0), 1");
  ASSERT_TRUE(waitForQuestion());
  ASSERT_TRUE(wait([&] { return evaluate("document.querySelectorAll('a').length") == "12"; }));
  settle();
  EXPECT_EQ(otherWindows().size(), 1U);
  answerQuestion("Block");
  evaluate("setTimeout(() => take(3), 0), 1");
  ASSERT_TRUE(wait([&] { return evaluate("document.querySelectorAll('a').length") == "15"; }));
  settle();
  EXPECT_EQ(question(), nullptr);
  EXPECT_EQ(engine().permissions().answer(site(), "downloads"), false);
}

TEST_F(PageMannersTest, WhatWasAllowedCanBeTakenBack) {
  load("<p>page");
  engine().permissions().remember(site(), "location", true);
  showPermissions(engineView(), engine());
  ASSERT_EQ(otherWindows().size(), 1U);
  EXPECT_TRUE(popoverWindow().isKeptOpen());
  const auto rows = all(GTK_WIDGET(otherWindows()[0]), ADW_TYPE_COMBO_ROW);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_STREQ(adw_preferences_row_get_title(ADW_PREFERENCES_ROW(rows[0])), "Location");
  EXPECT_EQ(adw_combo_row_get_selected(ADW_COMBO_ROW(rows[0])), 1U);
  adw_combo_row_set_selected(ADW_COMBO_ROW(rows[0]), 2);
  EXPECT_EQ(engine().permissions().answer(site(), "location"), false);
  adw_combo_row_set_selected(ADW_COMBO_ROW(rows[0]), 0);
  EXPECT_EQ(engine().permissions().answer(site(), "location"), std::nullopt);
  showPermissions(engineView(), engine());
  EXPECT_EQ(otherWindows().size(), 1U);
  gtk_window_close(otherWindows()[0]);
  EXPECT_TRUE(wait([&] { return otherWindows().empty(); }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, AReloadBringsAPageBackThatHangs) {
  load("<p>page");
  webView->evaluateJavaScript("for (;;);");
  webView->reload();
  ASSERT_TRUE(wait([&] { return loads.finished == 2; }));
  EXPECT_EQ(evaluate("document.title"), "\"page\"");
}

TEST_F(PageMannersTest, APageThatAsksForEverCanBeSilencedAndLoadedAgain) {
  load("<p>page<script>window.asked = 0</script>");
  evaluate("setTimeout(() => { for (;;) alert(String(++asked)); }, 0), 1");
  const auto hasStopButton = [&] {
    if (question() == nullptr) return false;
    for (auto* button : all(GTK_WIDGET(question()), GTK_TYPE_BUTTON)) {
      const char* label = gtk_button_get_label(GTK_BUTTON(button));
      if (label != nullptr && std::string(label) == "_Stop this page from asking") return true;
    }
    return false;
  };
  for (int i = 0; i < 10 && !hasStopButton(); ++i) {
    ASSERT_TRUE(waitForQuestion());
    if (!hasStopButton()) answerQuestion("OK");
  }
  ASSERT_TRUE(hasStopButton());
  answerQuestion("_Stop this page from asking");
  ASSERT_TRUE(wait([&] { return isSilencedAndAsking(engineView()); }));
  EXPECT_EQ(question(), nullptr);
  page = "<title>again</title>";
  webView->reload();
  ASSERT_TRUE(wait([&] { return loads.finished >= 2; }));
  EXPECT_EQ(evaluate("document.title"), "\"again\"");
}

TEST_F(PageMannersTest, WhatAPageAsksNamesItsHostAndIsAnsweredByEscapeAndReturn) {
  load("<p>page");
  evaluate(
      "setTimeout(() => { window.told = [confirm('Go on?'), prompt('Name?', 'nobody'), confirm('Sure?')]; }, "
      "0), 1");
  ASSERT_TRUE(waitForQuestion());
  EXPECT_STREQ(adw_message_dialog_get_heading(question()), "127.0.0.1 says");
  EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(question())), window);
  EXPECT_TRUE(popoverWindow().isKeptOpen());
  // The next question's window may be where this one's was.
  const auto asks = [&](const std::string& text) {
    if (question() == nullptr) return false;
    const auto texts = labels(GTK_WIDGET(question()));
    return std::find(texts.begin(), texts.end(), text) != texts.end();
  };
  const auto answerByKey = [&](const std::string& text, const std::string& key) {
    ASSERT_TRUE(wait([&] { return asks(text) && gtk_window_is_active(GTK_WINDOW(question())); }));
    run("xdotool key " + key);
    ASSERT_TRUE(wait([&] { return !asks(text); }));
  };
  answerByKey("Go on?", "Escape");
  answerByKey("Name?", "Return");
  answerByKey("Sure?", "Return");
  ASSERT_TRUE(wait([&] { return !popoverWindow().isKeptOpen(); }));
  EXPECT_EQ(evaluate("told"), "[false,\"nobody\",true]");
}

TEST_F(PageMannersTest, ALongTextScrollsAndAQuestionGoesWithItsPage) {
  load("<p>page");
  evaluate("setTimeout(() => alert('word '.repeat(20000)), 0), 1");
  ASSERT_TRUE(waitForQuestion());
  ASSERT_TRUE(wait([&] { return gtk_widget_get_height(GTK_WIDGET(question())) > 50; }));
  EXPECT_LT(gtk_widget_get_height(GTK_WIDGET(question())), 600);
  EXPECT_LT(gtk_widget_get_width(GTK_WIDGET(question())), 700);
  killWebProcesses();
  ASSERT_TRUE(wait([&] { return question() == nullptr; }));
  EXPECT_FALSE(popoverWindow().isKeptOpen());
}

TEST_F(PageMannersTest, APageOutOfSightAsksWhenItIsOnShow) {
  load("<p>page");
  gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
  webView->evaluateJavaScript("setTimeout(() => { window.told = confirm('Go on?'); }, 0)");
  settleTurns();
  EXPECT_EQ(question(), nullptr);
  EXPECT_FALSE(popoverWindow().isKeptOpen());
  gtk_window_present(window);
  ASSERT_TRUE(waitForQuestion());
  answerQuestion("OK");
  EXPECT_EQ(evaluate("told"), "true");
}

TEST_F(PageMannersTest, ALinkThatIsMeantForTheBrowserLeavesThePageAlone) {
  load("<a href='/elsewhere?[a]|b' style='display:block;width:100vw;height:100vh'>x</a>");
  const auto place = X11Desktop::frame(window);
  run("xdotool mousemove " + std::to_string(place.x + 100) + " " + std::to_string(place.y + 100) +
      " sleep 0.05 click 2");
  settle();
  run("xdotool keydown ctrl sleep 0.05 click 1 sleep 0.05 keyup ctrl");
  settle();
  EXPECT_EQ(evaluate("location.pathname"), "\"/page\"");
  for (const auto& request : server.requests())
    EXPECT_FALSE(request.starts_with("GET /elsewhere")) << request;
}

TEST_F(PageMannersTest, TabLeadsOutOfAPageToWhatStandsBehindIt) {
  load("<input id=first autofocus><input id=last>");
  GtkWidget* behind = gtk_button_new_with_label("behind");
  gtk_box_append(GTK_BOX(gtk_window_get_child(window)), behind);
  evaluate("first.focus(), 1");
  run("xdotool key Tab");
  ASSERT_TRUE(wait([&] { return evaluate("document.activeElement.id") == "\"last\""; }));
  settleTurns();
  EXPECT_EQ(gtk_window_get_focus(window), GTK_WIDGET(engineView())) << "not before its last control";
  run("xdotool key Tab");
  ASSERT_TRUE(wait([&] { return gtk_window_get_focus(window) == behind; }))
      << (gtk_window_get_focus(window) != nullptr ? G_OBJECT_TYPE_NAME(gtk_window_get_focus(window)) : "none")
      << " " << evaluate("document.activeElement.id + document.hasFocus()");
  settleTurns();
  EXPECT_EQ(gtk_window_get_focus(window), behind);
  EXPECT_TRUE(gtk_window_get_focus_visible(window));
  run("xdotool key shift+Tab");
  ASSERT_TRUE(wait([&] { return gtk_window_get_focus(window) == GTK_WIDGET(engineView()); }))
      << G_OBJECT_TYPE_NAME(gtk_window_get_focus(window));
}

TEST_F(PageMannersTest, AWindowForSigningInSaysWhereItIsFirst) {
  load(wholePageButton + "function go() { window.open('/frame', 'w', 'width=300,height=200'); }</script>");
  frame = "<title>Your bank</title>";
  click(100, 100);
  const auto told = [&]() -> std::string {
    for (auto* other : otherWindows()) return gtk_window_get_title(other);
    return {};
  };
  ASSERT_TRUE(wait([&] { return told() == "127.0.0.1 (not encrypted) – Your bank"; })) << told();
  const auto texts = labels(GTK_WIDGET(otherWindows().front()));
  EXPECT_NE(std::find(texts.begin(), texts.end(), "127.0.0.1 (not encrypted)"), texts.end());
}

TEST_F(PageMannersTest, SpellingFollowsTheLocalesLanguages) {
  constexpr const char* names[] = {"de_AT.UTF-8@euro", "de_AT.UTF-8", "de_AT", "de", "C", nullptr};
  EXPECT_EQ(WebEngine::spellingLanguages(names), (std::vector<std::string>{"de_AT", "de"}));
  constexpr const char* none[] = {"C.UTF-8", "C", nullptr};
  EXPECT_TRUE(WebEngine::spellingLanguages(none).empty());
}

TEST_F(PageMannersTest, ACrashSendsNoFormAgain) {
  load("<form id=f method=post action=/form><input name=a value=b></form>");
  evaluate("f.submit(), 1");
  ASSERT_TRUE(wait([&] { return loads.finished == 2; }));
  const auto posts = [&] {
    int count = 0;
    for (const auto& request : server.requests()) count += request.starts_with("POST ") ? 1 : 0;
    return count;
  };
  ASSERT_EQ(posts(), 1);
  killWebProcesses();
  ASSERT_TRUE(wait([&] { return loads.finished == 3; }));
  EXPECT_EQ(evaluate("document.title"), "\"This page stopped working\"");
  EXPECT_EQ(posts(), 1);
  // Nor do the user's own ways of loading it again.
  webView->reload();
  ASSERT_TRUE(wait([&] { return loads.finished == 4; }));
  EXPECT_EQ(posts(), 1);
}

TEST_F(PageMannersTest, ACrashLoadsAnyOtherPageAgain) {
  load("<p>page");
  killWebProcesses();
  ASSERT_TRUE(wait([&] { return loads.finished == 2; }));
  EXPECT_EQ(evaluate("document.title"), "\"page\"");
}

}  // namespace
}  // namespace platform
