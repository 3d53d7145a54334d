#include "Platform/Gtk/GObjectPtr.h"
#include "Platform/Gtk/GtkDialogs.h"
#include "gtk/GtkFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace platform {
namespace {

using Role = NSAlert::Button::Role;

class GtkDialogsTest : public GtkFixture {
 protected:
  GtkDialogsTest() {
    folder = std::filesystem::temp_directory_path() / ("velkin-dialogs-" + std::to_string(g_random_int()));
    std::filesystem::create_directories(folder / "chosen");
    hosting = std::make_unique<GtkHostingView>(Text("below"));
    show(hosting->widget());
  }
  ~GtkDialogsTest() override {
    if (window != nullptr) {
      gtk_window_destroy(window);
      window = nullptr;
    }
    turn();
    hosting.reset();
    std::filesystem::remove_all(folder);
  }
  GtkDialogs make() {
    return GtkDialogs({[this] { return hold(); }, [this] { return (folder / "folders").string(); }, [] {}});
  }
  std::shared_ptr<const void> hold() {
    auto token = std::make_shared<const int>(0);
    held = token;
    return token;
  }
  /// The one that came up last.
  GtkWindow* dialog() {
    GtkWindow* found = nullptr;
    GListModel* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
      const auto each = GObjectPtr<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, i)));
      if (gtk_window_get_transient_for(each.get()) == window &&
          gtk_widget_get_mapped(GTK_WIDGET(each.get()))) {
        found = each.get();
      }
    }
    return found;
  }
  GtkWidget* button(const std::string& title) {
    for (auto* widget : all(GTK_WIDGET(dialog()), GTK_TYPE_BUTTON)) {
      const char* label = gtk_button_get_label(GTK_BUTTON(widget));
      if (label != nullptr && title == label) return widget;
    }
    return nullptr;
  }
  void ask() {
    dialogs.show(
        NSAlert{
            "Import New Settings?", "Are you sure?", {{"Cancel", Role::cancel}, {"Import", Role::confirm}}},
        hosting.get(), [this](std::size_t chosen) { answer = chosen; });
    ASSERT_TRUE(wait([&] { return dialog() != nullptr; }));
  }

  std::filesystem::path folder;
  std::unique_ptr<GtkHostingView> hosting;
  std::weak_ptr<const void> held;
  std::optional<std::size_t> answer;
  GtkDialogs dialogs = make();
};

TEST_F(GtkDialogsTest, AnAlertSaysItsTextsAndHoldsThePopoverUntilItsAnswer) {
  ask();
  const auto texts = labels(GTK_WIDGET(dialog()));
  EXPECT_NE(std::find(texts.begin(), texts.end(), "Import New Settings?"), texts.end());
  EXPECT_NE(std::find(texts.begin(), texts.end(), "Are you sure?"), texts.end());
  EXPECT_FALSE(held.expired());
  ASSERT_NE(button("Import"), nullptr);
  EXPECT_EQ(gtk_window_get_default_widget(dialog()), button("Import")) << "Return confirms";
  g_signal_emit_by_name(button("Import"), "clicked");
  ASSERT_TRUE(wait([&] { return answer.has_value(); }));
  EXPECT_EQ(answer, 1U);
  EXPECT_TRUE(held.expired());
}

TEST_F(GtkDialogsTest, EscapeAndClosingCancel) {
  ask();
  gtk_window_close(dialog());
  ASSERT_TRUE(wait([&] { return answer.has_value(); }));
  EXPECT_EQ(answer, 0U);
  EXPECT_TRUE(held.expired());
}

TEST_F(GtkDialogsTest, AnAlertGoesWithItsWindow) {
  ask();
  gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
  ASSERT_TRUE(wait([&] { return answer.has_value(); }));
  EXPECT_EQ(answer, 0U);
  EXPECT_EQ(dialog(), nullptr);
  EXPECT_TRUE(held.expired());
}

TEST_F(GtkDialogsTest, AnAlertWithoutAWindowStandsAlone) {
  dialogs.show(NSAlert{"Told", "", {}}, nullptr, [this](std::size_t chosen) { answer = chosen; });
  GtkWindow* alone = nullptr;
  ASSERT_TRUE(wait([&] {
    GListModel* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
      const auto each = GObjectPtr<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, i)));
      if (each.get() != window && gtk_widget_get_mapped(GTK_WIDGET(each.get()))) alone = each.get();
    }
    return alone != nullptr;
  }));
  gtk_window_close(alone);
  ASSERT_TRUE(wait([&] { return answer.has_value(); }));
}

#if !GTK_CHECK_VERSION(4, 10, 0)
// The newer toolkit's dialogue is one of the desktop's, with nothing in it that could be reached from here.
GtkFileChooser* chooserIn(GtkWindow* dialog) { return GTK_FILE_CHOOSER(dialog); }

class GtkFilePanelsTest : public GtkDialogsTest {
 protected:
  void openSavePanel(const std::string& name) {
    NSSavePanel panel;
    panel.title = "Choose Output Location";
    panel.nameFieldStringValue = name;
    panel.allowedFileTypes = {{"PDF", "pdf"}};
    panel.use = "pdf";
    dialogs.show(panel, hosting.get(), [this](std::optional<NSSavePanel::Choice> choice) {
      saved = std::move(choice);
      isSaveAnswered = true;
    });
    ASSERT_TRUE(wait([&] { return dialog() != nullptr; }));
  }
  /// As if something was saved there before.
  void moveTo(const std::filesystem::path& path) {
    std::ofstream(folder / "folders") << "[Folders]\npdf=" << path.string() << "\n";
  }
  void untilIn(const std::filesystem::path& path) {
    ASSERT_TRUE(wait([&] {
      const auto now = GObjectPtr<GFile>::adopt(gtk_file_chooser_get_current_folder(chooserIn(dialog())));
      const GStringPtr place(now ? g_file_get_path(now.get()) : nullptr);
      return place && path.string() == place.get();
    }));
  }
  void respond(int response) { gtk_dialog_response(GTK_DIALOG(dialog()), response); }

  std::optional<NSSavePanel::Choice> saved;
  bool isSaveAnswered = false;
};

TEST_F(GtkFilePanelsTest, ASavePanelProposesItsNameGivesTheExtensionAndRemembersTheFolder) {
  moveTo(folder / "chosen");
  openSavePanel("page");
  EXPECT_FALSE(held.expired());
  const GStringPtr name(gtk_file_chooser_get_current_name(chooserIn(dialog())));
  EXPECT_STREQ(name.get(), "page");
  untilIn(folder / "chosen");
  respond(GTK_RESPONSE_ACCEPT);
  ASSERT_TRUE(wait([&] { return isSaveAnswered; }));
  ASSERT_TRUE(saved.has_value());
  EXPECT_EQ(saved->path, (folder / "chosen" / "page.pdf").string());
  EXPECT_TRUE(held.expired());

  isSaveAnswered = false;
  openSavePanel("again.pdf");
  untilIn(folder / "chosen");
  respond(GTK_RESPONSE_CANCEL);
  ASSERT_TRUE(wait([&] { return isSaveAnswered; }));
  EXPECT_FALSE(saved.has_value());
}

TEST_F(GtkFilePanelsTest, AFileThatOnlyTheExtensionMeetsIsAskedAbout) {
  std::ofstream(folder / "chosen" / "page.pdf") << "precious";
  moveTo(folder / "chosen");
  openSavePanel("page");
  untilIn(folder / "chosen");
  respond(GTK_RESPONSE_ACCEPT);
  ASSERT_TRUE(wait([&] { return dialog() != nullptr && button("Replace") != nullptr; }));
  EXPECT_FALSE(isSaveAnswered);
  EXPECT_FALSE(held.expired());
  g_signal_emit_by_name(button("Cancel"), "clicked");
  ASSERT_TRUE(wait([&] { return isSaveAnswered; }));
  EXPECT_FALSE(saved.has_value());
}

TEST_F(GtkFilePanelsTest, APanelGoesWithItsWindow) {
  openSavePanel("page");
  gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
  ASSERT_TRUE(wait([&] { return isSaveAnswered; }));
  EXPECT_FALSE(saved.has_value());
  EXPECT_TRUE(held.expired());
}
#endif

}  // namespace
}  // namespace platform
