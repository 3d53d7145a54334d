#pragma once

#include "Controller/PopoverContent.h"
#include "Controller/ViewFactory.h"
#include "Keyboard/KeyboardShortcuts.h"
#include "Platform/DebugLog.h"
#include "Platform/Headless/HeadlessPlatform.h"
#include "Platform/NSMenu.h"
#include "Values/MenuHelperDelegate.h"
#include "WebView/WebViewHelper.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velkin {

/// Who is told of the menu, for rooms that have one.
class MenuListener : public MenuHelperDelegate, public platform::NSMenuDelegate {
 public:
  std::vector<std::string> heard;

  void aboutClicked() override { heard.emplace_back("about"); }
  void homeClicked() override { heard.emplace_back("home"); }
  void shortcutsClicked() override { heard.emplace_back("shortcuts"); }
  void appearanceClicked() override { heard.emplace_back("appearance"); }
  void preferencesClicked() override { heard.emplace_back("preferences"); }
  void previewClicked() override { heard.emplace_back("preview"); }
  void toolbarClicked() override { heard.emplace_back("toolbar"); }
  void stickyClicked() override { heard.emplace_back("sticky"); }
  void experimentalClicked() override { heard.emplace_back("experimental"); }
  void reloadClicked() override { heard.emplace_back("reload"); }
  void openClicked() override { heard.emplace_back("open"); }
  void quitClicked() override { heard.emplace_back("quit"); }
  void menuDidClose(platform::NSMenu&) override { heard.emplace_back("closed"); }
};

/// What a room of the controller stands on, and nothing of the others.
class RoomFixture : public testing::Test {
 protected:
  RoomFixture() {
    platform::setDebugLogSink([this](std::string_view line) { log.emplace_back(line); });
  }
  ~RoomFixture() override {
    // Some rooms show the table of shortcuts, which asks for their names.
    KeyboardShortcuts::shutDown();
    platform::setDebugLogSink({});
  }

  platform::HeadlessWebView& page(WebViewSwitchType view) const {
    return dynamic_cast<platform::HeadlessWebView&>(*content.pages[view].webView);
  }
  /// A page with what it shows, as the engine gives it.
  static constexpr const char* mhtml =
      "Content-Type: multipart/related; boundary=edge\n\n--edge\nContent-Type: text/html\n\nhello\n"
      "--edge--\n";

  /// The content as it is after a switch to `view`.
  void show(WebViewSwitchType view) {
    content.currentWebView = content.pages[view];
    content.view = view;
    defaults.set(rawValue(view), UserDefault::lastVisibleWebView);
    content.show(views.container());
  }
  void showPopover() {
    if (!item) item = menuBar.statusItem(28);
    content.popover->show(item->button()->bounds(), *item->button(), platform::NSRectEdge::maxY);
  }
  static ServicePages makePages() {
    using enum WebViewSwitchType;
    WebViewHelper helper;
    return ServicePages({helper.getWebUIView(chatgpt), helper.getWebUIView(bard),
                         helper.getWebUIView(bitbucket), helper.getWebUIView(gitlab),
                         helper.getWebUIView(hemingway), helper.getWebUIView(jira)});
  }

  platform::HeadlessPlatform desktop;
  UserDefaultsHelper defaults;
  std::vector<std::string> log;
  PopoverContent content{platform::NSPopover::make(), makePages()};
  ViewFactory views{{}, content};
  platform::NSStatusBar menuBar;
  std::unique_ptr<platform::NSStatusItem> item;
};

}  // namespace velkin
