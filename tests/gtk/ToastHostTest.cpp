#include "Platform/Gtk/ToastHost.h"
#include "gtk/GtkFixture.h"

#include <algorithm>

namespace platform {
namespace {

class ToastHostTest : public GtkFixture {
 protected:
  ToastHostTest() { show(host.wrap(gtk_label_new("below"))); }
  bool isShown(const std::string& text) {
    const auto texts = labels(GTK_WIDGET(window));
    return std::find(texts.begin(), texts.end(), text) != texts.end();
  }

  ToastHost host;
};

TEST_F(ToastHostTest, WhatIsToldLastTakesThePlaceOfWhatWasToldBefore) {
  host.show("Working…");
  ASSERT_TRUE(wait([&] { return isShown("Working…"); }));
  host.show("It could not be done");
  EXPECT_TRUE(wait([&] { return isShown("It could not be done"); }));
  EXPECT_TRUE(wait([&] { return !isShown("Working…"); }));
}

TEST_F(ToastHostTest, AQuestionIsNotDrivenAwayByANotice) {
  host.show("A window was kept back", "Open", [] {});
  ASSERT_TRUE(wait([&] { return isShown("A window was kept back"); }));
  host.show("Something else");
  turn();
  EXPECT_TRUE(isShown("A window was kept back"));
}

}  // namespace
}  // namespace platform
