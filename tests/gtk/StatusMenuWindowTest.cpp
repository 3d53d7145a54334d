#include "Platform/Gtk/StatusMenuWindow.h"
#include "gtk/GtkFixture.h"

#include <optional>

namespace platform {
namespace {

class StatusMenuWindowTest : public GtkFixture {
 protected:
  StatusMenuWindowTest() {
    add("Version", {})->setEnabled(false);
    add("Sticky", "S")->setState(NSMenuItem::State::on);
    menu->addItem(NSMenuItem::separator());
    add("Secret", "x")->setHidden(true);
    add("Toolbar", "t")->setKeyEquivalentModifierMask(NSMenuItem::commandMask | NSMenuItem::optionMask);
    add("Menu", ",");
  }
  ~StatusMenuWindowTest() override { shown.close(); }

  std::shared_ptr<NSMenuItem> add(const std::string& title, const std::string& key) {
    auto item = std::make_shared<NSMenuItem>(
        title, [] {}, key);
    menu->addItem(item);
    return item;
  }

  std::vector<GtkWidget*> buttons() { return all(GTK_WIDGET(shown.window()), GTK_TYPE_BUTTON); }

  std::shared_ptr<NSMenu> menu = std::make_shared<NSMenu>();
  std::optional<std::size_t> chosen;
  int timesClosed = 0;
  StatusMenuWindow shown{menu, {[this](std::size_t item) { chosen = item; }, [this] { ++timesClosed; }}};
};

TEST_F(StatusMenuWindowTest, theRowsAreTheItemsThatShowWithMarkTitleAndKeys) {
  shown.show(std::nullopt);
  EXPECT_EQ(labels(GTK_WIDGET(shown.window())),
            (std::vector<std::string>{" ", "Version", "", "✓", "Sticky", "Shift+Ctrl+S", " ", "Toolbar",
                                      "Ctrl+Alt+T", " ", "Menu", "Ctrl+,"}));
  EXPECT_EQ(all(GTK_WIDGET(shown.window()), GTK_TYPE_SEPARATOR).size(), 1U);
  ASSERT_EQ(buttons().size(), 4U);
  EXPECT_FALSE(gtk_widget_get_sensitive(buttons()[0]));
  EXPECT_TRUE(gtk_widget_get_sensitive(buttons()[1]));
}

TEST_F(StatusMenuWindowTest, aChoiceTellsTheItemsNumberInTheMenuAndTakesTheWindowDown) {
  shown.show(std::nullopt);
  g_signal_emit_by_name(buttons()[2], "clicked");
  EXPECT_EQ(chosen, 4U) << "the separator and the hidden item count";
  EXPECT_FALSE(shown.isShown());
  EXPECT_EQ(timesClosed, 0);
}

TEST_F(StatusMenuWindowTest, itemsAreTheirKindForAScreenReader) {
  shown.show(std::nullopt);
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(buttons()[1])),
            GTK_ACCESSIBLE_ROLE_MENU_ITEM_CHECKBOX);
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(buttons()[2])), GTK_ACCESSIBLE_ROLE_MENU_ITEM);
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(gtk_window_get_child(shown.window()))),
            GTK_ACCESSIBLE_ROLE_MENU);
}

TEST_F(StatusMenuWindowTest, closingTellsOfItOnce) {
  shown.close();
  EXPECT_EQ(timesClosed, 0) << "it wasn't shown";
  shown.show(std::nullopt);
  EXPECT_TRUE(shown.isShown());
  gtk_window_close(shown.window());
  shown.close();
  EXPECT_FALSE(shown.isShown());
  EXPECT_EQ(timesClosed, 1);
  EXPECT_FALSE(chosen);
}

TEST_F(StatusMenuWindowTest, itBelongsToTheWindowThatHasTheKeyboard) {
  show(gtk_label_new("below"));
  ASSERT_TRUE(wait([this] { return gtk_window_is_active(window) != FALSE; }));
  shown.show(std::nullopt);
  EXPECT_EQ(gtk_window_get_transient_for(shown.window()), window);
  ASSERT_TRUE(wait([this] { return gtk_window_is_active(shown.window()) != FALSE; }));
  gtk_window_present(window);
  EXPECT_TRUE(wait([this] { return !shown.isShown(); })) << "the keyboard went elsewhere";
  EXPECT_EQ(timesClosed, 1);
}

TEST_F(StatusMenuWindowTest, itEndsWithItsOwnerWithoutTellingAnybody) {
  {
    StatusMenuWindow other{menu, {[](std::size_t) { FAIL(); }, [] { FAIL(); }}};
    other.show(std::nullopt);
    EXPECT_TRUE(other.isShown());
  }
  turn();
}

}  // namespace
}  // namespace platform
