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

TEST_F(ToastHostTest, ALongReasonIsReadToItsEnd) {
  std::string text = "The page could not be saved, <b>and</b> this is why: ";
  while (text.size() < 600) text += "no space left on device, ";
  host.show(text);
  ASSERT_TRUE(wait([&] { return isShown(text); }));
  for (auto* label : all(GTK_WIDGET(window), GTK_TYPE_LABEL)) {
    if (gtk_label_get_text(GTK_LABEL(label)) != text) continue;
    EXPECT_TRUE(
        wait([&] { return pango_layout_get_line_count(gtk_label_get_layout(GTK_LABEL(label))) > 1; }));
    EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(label))));
    EXPECT_LE(gtk_widget_get_width(label), gtk_widget_get_width(GTK_WIDGET(window)));
  }
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
