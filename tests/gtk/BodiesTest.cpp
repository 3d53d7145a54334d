#include "Helpers/UserDefaultsHelper.h"
#include "Markdown/MarkdownUIView.h"
#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/NSPopover.h"
#include "SearchBar/SearchBarView.h"
#include "WebView/FindableWebView.h"
#include "gtk/GtkFixture.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace velkin {
namespace {

using namespace platform;

/// The program's own views as real widgets: where they stand.
class BodiesTest : public GtkFixture {
 protected:
  BodiesTest() : popover(NSPopover::make()) {}
  ~BodiesTest() override {
    hosting.reset();
    UserDefaultsHelper().set(600, UserDefault::webViewWidth);
  }

  static WebView makeWebView(const std::string& name) {
    return {*URL::parse("about:blank#" + name), WKWebView::make({}, {.usesPersistentDataStore = false})};
  }
  FindableWebView container() const {
    return {.scripting = ScriptingHelper::make(),
            .webView = chat,
            .pages = ServicePages({chat, bard, bitbucket, gitlab, hemingway, jira}),
            .markdownView = MarkdownUIView{.sharedState = state},
            .sharedState = state};
  }
  template <class V>
  void showView(const V& view, int width, int height) {
    hosting = std::make_unique<GtkHostingView>(View(view));
    show(hosting->widget(), width, height);
    turn();
  }
  GdkRectangle place(GtkWidget* widget) const { return boundsIn(widget, hosting->widget()); }
  GdkRectangle placeOf(const WebView& view) const {
    return place(dynamic_cast<GtkViewBase&>(*view.webView).widget());
  }
  std::vector<GtkWidget*> buttons() const { return all(hosting->widget(), GTK_TYPE_BUTTON); }

  std::unique_ptr<NSPopover> popover;
  std::shared_ptr<SharedState> state = std::make_shared<SharedState>();
  WebView bard = makeWebView("bard");
  WebView bitbucket = makeWebView("bitbucket");
  WebView chat = makeWebView("chat");
  WebView gitlab = makeWebView("gitlab");
  WebView hemingway = makeWebView("hemingway");
  WebView jira = makeWebView("jira");
  std::unique_ptr<GtkHostingView> hosting;
};

TEST_F(BodiesTest, TheToolbarStandsAboveThePageWithItsButtonsInOrder) {
  state->showToolbar.set(true);
  showView(container(), 600, 500);
  const std::vector<std::string> starts = {"Open In Browser",    "Return to Home", "Reload Page",
                                           "Appearance Setting", "Quit",           "Page Settings"};
  std::vector<GtkWidget*> tools;
  for (auto* button : buttons()) {
    if (gtk_widget_get_tooltip_text(button) != nullptr) tools.push_back(button);
  }
  ASSERT_EQ(tools.size(), starts.size());
  for (std::size_t i = 0; i < tools.size(); ++i) {
    EXPECT_TRUE(std::string(gtk_widget_get_tooltip_text(tools[i])).starts_with(starts[i]));
    EXPECT_GT(place(tools[i]).x, i == 0 ? 0 : place(tools[i - 1]).x);
    EXPECT_LE(place(tools[i]).y + place(tools[i]).height, placeOf(chat).y);
  }
  EXPECT_EQ(placeOf(chat).width, 600);
}

TEST_F(BodiesTest, TheFindBarHasItsFieldThenTheStepsThenDone) {
  state->showToolbar.set(false);
  state->isSearching.set(true);
  showView(container(), 600, 500);
  const auto fields = all(hosting->widget(), GTK_TYPE_TEXT);
  ASSERT_EQ(fields.size(), 1U);
  const auto present = buttons();
  ASSERT_EQ(present.size(), 3U);
  int x = place(fields[0]).x;
  for (auto* button : present) {
    EXPECT_GT(place(button).x, x);
    x = place(button).x;
  }
  EXPECT_EQ(labels(present.back()), std::vector<std::string>{"Done"});
  EXPECT_LE(place(present.back()).y + place(present.back()).height, placeOf(chat).y);
}

TEST_F(BodiesTest, WhatWasNotFoundIsToldWithoutMovingTheFieldOrThePage) {
  state->showToolbar.set(false);
  state->isSearching.set(true);
  const auto view = container();
  showView(view, 600, 500);
  // What it asks for decides where everything stands.
  const auto asked = [this] {
    std::array<int, 4> sizes{};
    gtk_widget_measure(hosting->widget(), GTK_ORIENTATION_VERTICAL, 600, &sizes[0], &sizes[1], nullptr,
                       nullptr);
    gtk_widget_measure(hosting->widget(), GTK_ORIENTATION_HORIZONTAL, -1, &sizes[2], &sizes[3], nullptr,
                       nullptr);
    return sizes;
  };
  const auto before = asked();
  ASSERT_GT(before[0], 0);
  view.isNotFoundTextHidden.set(false);
  ASSERT_TRUE(wait([&] {
    const auto texts = labels(hosting->widget());
    return std::ranges::find(texts, "Not\nfound") != texts.end();
  }));
  EXPECT_EQ(asked(), before);
}

TEST_F(BodiesTest, InAWideWindowTheSidebarsStandBesideThePageInTheirOrder) {
  UserDefaultsHelper().set(1420, UserDefault::webViewWidth);
  state->showToolbar.set(false);
  state->isBarding.set(true);
  state->isGitLabing.set(true);
  state->isJiring.set(true);
  // The display is no wider, and the sidebars go by what it has.
  showView(container(), 1280, 600);
  const std::vector<GdkRectangle> places = {placeOf(bard), placeOf(gitlab), placeOf(jira), placeOf(chat)};
  for (std::size_t i = 1; i < places.size(); ++i) {
    EXPECT_GE(places[i].x, places[i - 1].x + places[i - 1].width) << i;
    EXPECT_EQ(places[i].y, places[0].y) << i;
  }
  EXPECT_EQ(places[0].width, 192) << "a sidebar's share of the window's width";
  EXPECT_EQ(places[3].x + places[3].width, 1280);
}

TEST_F(BodiesTest, AMainPageKeepsItsPlaceThoughASidebarOfItIsAskedFor) {
  UserDefaultsHelper().set(980, UserDefault::webViewHeight);
  state->showToolbar.set(false);
  state->isChatting.set(true);
  state->isJiring.set(true);
  showView(container(), 600, 700);
  UserDefaultsHelper().set(600, UserDefault::webViewHeight);
  EXPECT_EQ(placeOf(chat).y, 0);
  EXPECT_EQ(placeOf(chat).width, 600);
  EXPECT_LE(placeOf(chat).y + placeOf(chat).height, placeOf(jira).y);
  state->isChatting.set(false);
  turn();
  EXPECT_TRUE(gtk_widget_get_mapped(dynamic_cast<GtkViewBase&>(*chat.webView).widget()));
}

TEST_F(BodiesTest, TheSearchBarHasRecentsThenThePromptThenTheIcon) {
  UserDefaultsHelper().set("key", UserDefault::searchKey);
  showView(SearchBarView{}, 720, 200);
  const auto fields = all(hosting->widget(), GTK_TYPE_TEXT);
  const auto images = all(hosting->widget(), GTK_TYPE_IMAGE);
  ASSERT_EQ(fields.size(), 1U);
  ASSERT_EQ(buttons().size(), 1U);
  const auto recents = place(buttons()[0]);
  const auto field = place(fields[0]);
  const auto icon = place(images.back());
  EXPECT_LE(recents.x + recents.width, field.x);
  EXPECT_LE(field.x + field.width, icon.x);
  EXPECT_EQ(icon.width, 32);
  EXPECT_EQ(icon.height, 32);
  EXPECT_FALSE(gtk_widget_is_sensitive(buttons()[0]));
  EXPECT_TRUE(wait([&] { return gtk_widget_has_focus(fields[0]) != FALSE; })) << "it waits for the prompt";
}

TEST_F(BodiesTest, AnAnswerStandsBelowItsButtonsAtItsHeight) {
  UserDefaultsHelper().set("key", UserDefault::searchKey);
  const SearchBarView view;
  view.resultHtml.set("<p>An answer</p>");
  showView(view, 720, 200);
  GtkWidget* copy = nullptr;
  for (auto* button : buttons()) {
    if (labels(button) == std::vector<std::string>{"Copy"}) copy = button;
  }
  ASSERT_NE(copy, nullptr);
  const auto pages = all(hosting->widget(), WEBKIT_TYPE_WEB_VIEW);
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_GT(place(pages[0]).y, place(copy).y + place(copy).height);
  // 24 rows of the answer's text, without the padding around it.
  EXPECT_NEAR(place(pages[0]).height, 24 * preferredPointSize(Font::title3) - 16, 2);
}

}  // namespace
}  // namespace velkin
