#include "Platform/Gtk/GtkPlatform.h"
#include "Platform/Gtk/LoadWatch.h"
#include "Platform/Gtk/PageNotices.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/NSPopover.h"
#include "gtk/GtkFixture.h"
#include "gtk/LoopbackServer.h"

#include <atomic>
#include <memory>
#include <string>

namespace platform {
namespace {

class LoadWatchTest : public GtkFixture {
 protected:
  LoadWatchTest()
      : popover(NSPopover::make()),
        server([this](int connection, const std::string& request) { serve(connection, request); }),
        view(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session",
                                          GtkPlatform::shared().webEngine().session(false), nullptr))) {
    g_object_ref_sink(view);
  }
  ~LoadWatchTest() override {
    watch.reset();
    isServing = true;
    if (window != nullptr) gtk_box_remove(GTK_BOX(gtk_widget_get_parent(GTK_WIDGET(view))), GTK_WIDGET(view));
    g_object_unref(view);
  }

  void serve(int connection, const std::string&) const {
    if (isServing) {
      LoopbackServer::send(connection,
                           LoopbackServer::answer(200, "<title>page</title>", "Content-Type: text/html\r\n"));
    } else if (isSilent) {
      while (isSilent && !isServing) g_usleep(10000);
    } else {
      LoopbackServer::reset(connection);
    }
  }
  void start(LoadWatch::Limits limits) {
    watch = std::make_unique<LoadWatch>(view, limits);
    watch->didFail = [this](const std::string&, const GError&) { ++failures; };
    webkit_web_view_load_uri(view, server.address("/page").c_str());
  }
  bool waitForTitle(const std::string& title) {
    return wait([&] {
      const char* now = webkit_web_view_get_title(view);
      return now != nullptr && title == now && !webkit_web_view_is_loading(view);
    });
  }
  std::string notice() const { return "“127.0.0.1” can’t be reached"; }
  static void networkComesBack() {
    g_signal_emit_by_name(g_network_monitor_get_default(), "network-changed", TRUE);
  }

  std::unique_ptr<NSPopover> popover;
  std::atomic<bool> isServing = false;
  std::atomic<bool> isSilent = false;
  int failures = 0;
  LoopbackServer server;
  WebKitWebView* view;
  std::unique_ptr<LoadWatch> watch;
};

TEST_F(LoadWatchTest, APageThatCantBeHadSaysSoUnderItsAddressAndComesWhenTheNetworkDoes) {
  start({.answer = 60, .betweenTries = 0});
  ASSERT_TRUE(waitForTitle(notice()));
  EXPECT_EQ(failures, 1);
  EXPECT_EQ(webkit_web_view_get_uri(view), server.address("/page"));
  isServing = true;
  networkComesBack();
  ASSERT_TRUE(waitForTitle("page"));
  // It is there: no more tries.
  const auto requests = server.requests().size();
  networkComesBack();
  turn();
  EXPECT_EQ(server.requests().size(), requests);
}

TEST_F(LoadWatchTest, TriesThatNobodyAskedForHaveTheirDistance) {
  start({.answer = 60, .betweenTries = 1000});
  ASSERT_TRUE(waitForTitle(notice()));
  const auto connections = server.connections();
  for (int i = 0; i < 20; ++i) {
    networkComesBack();
    turn();
  }
  EXPECT_EQ(server.connections(), connections);
}

TEST_F(LoadWatchTest, APageThatNeverBeginsIsGivenUp) {
  isSilent = true;
  start({.answer = 0.3, .betweenTries = 1000});
  ASSERT_TRUE(waitForTitle(notice()));
  EXPECT_EQ(failures, 1);
  isSilent = false;
}

TEST_F(LoadWatchTest, ComingOnShowIsAReasonToTryAgain) {
  start({.answer = 60, .betweenTries = 0});
  ASSERT_TRUE(waitForTitle(notice()));
  isServing = true;
  show(GTK_WIDGET(view));
  ASSERT_TRUE(waitForTitle("page"));
}

TEST_F(LoadWatchTest, WhatTheUserGivesUpIsNoFailure) {
  isSilent = true;
  start({.answer = 60, .betweenTries = 1000});
  ASSERT_TRUE(wait([&] { return !server.requests().empty(); }));
  webkit_web_view_stop_loading(view);
  ASSERT_TRUE(wait([&] { return failures == 1; }));
  turn();
  EXPECT_TRUE(webkit_web_view_get_title(view) == nullptr ||
              std::string(webkit_web_view_get_title(view)).empty());
  isSilent = false;
}

TEST(PageNoticesTest, TheFailureIsToldInWords) {
  const auto said = [](GQuark domain, int code, bool isOffline = false) {
    GError error{domain, code, const_cast<char*>("<raw> words")};
    return failureNotice("https://user@chat.example/<a>?b", error, isOffline);
  };
  const auto has = [](const std::string& page, const char* words) {
    return page.find(words) != std::string::npos;
  };
  EXPECT_TRUE(has(said(G_RESOLVER_ERROR, G_RESOLVER_ERROR_NOT_FOUND), "No server of this name"));
  EXPECT_TRUE(has(said(G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED), "refuses"));
  EXPECT_TRUE(has(said(G_IO_ERROR, G_IO_ERROR_NETWORK_UNREACHABLE), "No way leads"));
  EXPECT_TRUE(has(said(G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED, true), "isn’t connected to a network"));
  EXPECT_TRUE(has(said(G_TLS_ERROR, G_TLS_ERROR_BAD_CERTIFICATE), "certificate"));
  EXPECT_TRUE(has(said(G_IO_ERROR, G_IO_ERROR_FAILED), "&lt;raw&gt; words"));
  const auto page = said(G_IO_ERROR, G_IO_ERROR_FAILED);
  EXPECT_TRUE(has(page, "“chat.example” can’t be reached"));
  EXPECT_TRUE(has(page, ">Try Again</a>"));
  EXPECT_FALSE(has(page, "/<a>")) << "no address is markup";
  EXPECT_TRUE(has(silenceNotice("https://chat.example/"), "within a minute"));
}

}  // namespace
}  // namespace platform
